import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Review
import Lumisort.Ui

/// The page of the library's window that is shown now.
FocusScope {
    id: content
    required property LibraryWindow window
    property real tileSize: 210
    readonly property ActionSet actions: window.actions

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: {
            switch (content.window.page) {
            case LibraryWindow.Welcome: return welcome;
            case LibraryWindow.Photos: return photos;
            case LibraryWindow.Groups: return groups;
            case LibraryWindow.Scanning: return scanning;
            case LibraryWindow.FindMatches: return findMatches;
            case LibraryWindow.NoMatches: return noMatches;
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
            headline: content.window.task.busy ? "" : "Add photos"
            note: content.window.task.busy ? "" : "JPEG, HEIC, PNG, TIFF, RAW"
            command: content.actions.of(ActionSet.AddFolder)
            hint: "Or drop folders here"
        }
    }
    Component {
        id: empty
        EmptyPanel {
            iconName: content.window.state.query !== "" ? "edit-find" : "photo"
            headline: content.window.emptyText
        }
    }
    Component {
        id: findMatches
        EmptyPanel {
            iconName: "edit-duplicate"
            headline: "Find matching photos"
            command: content.actions.of(ActionSet.FindMatches)
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
            progress: content.window.matches.progress
            command: content.actions.of(ActionSet.Stop)
            quiet: true
        }
    }
}
