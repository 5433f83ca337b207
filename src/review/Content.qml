import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// The page that the library's state calls for.
FocusScope {
    id: content
    required property LibraryWindow window
    property real tileSize: 210
    readonly property QtObject model: window.model
    readonly property WindowCommands commands: window.commands

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: {
            switch (content.window.page) {
            case "welcome": return welcome;
            case "photos": return photos;
            case "groups": return groups;
            case "scanning": return scanning;
            case "findMatches": return findMatches;
            case "noMatches": return noMatches;
            default: return empty;
            }
        }
    }

    Component {
        id: photos
        PhotoGrid {
            focus: true
            window: content.window
            tileSize: content.tileSize
        }
    }
    Component {
        id: groups
        SimilarGroups {
            focus: true
            window: content.window
            tileSize: content.tileSize
        }
    }
    Component {
        id: welcome
        EmptyPanel {
            iconName: "photo"
            headline: content.model.busy ? "" : "Add photos"
            note: content.model.busy ? "" : "JPEG, HEIC, PNG, TIFF, RAW"
            command: content.commands.addFolder
            hint: "Or drop folders here"
        }
    }
    Component {
        id: empty
        EmptyPanel {
            iconName: content.model.query !== "" ? "edit-find" : "photo"
            headline: content.window.emptyText
        }
    }
    Component {
        id: findMatches
        EmptyPanel {
            iconName: "edit-duplicate"
            headline: "Find matching photos"
            command: content.commands.findMatches
        }
    }
    Component {
        id: noMatches
        EmptyPanel {
            iconName: "edit-duplicate"
            headline: "No matches"
        }
    }
    Component {
        id: scanning
        EmptyPanel {
            iconName: "edit-duplicate"
            headline: "Analyzing photos…"
            progress: content.model.similarityProgress
            command: content.commands.stop
            quiet: true
        }
    }
}
