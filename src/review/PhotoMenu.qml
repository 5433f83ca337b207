import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// What one photo offers.
Loader {
    id: loader
    required property LibraryWindow window
    property string url
    readonly property bool readable: window.marksRevision >= 0 && window.isReadable(url)
    readonly property string unreadable: "This photo is unavailable."

    function show(parent, x, y, photo) {
        url = photo;
        active = true;
        item.popup(parent, x, y);
    }

    active: false
    sourceComponent: ContextMenu {
        ContextMenuItem {
            text: "Show Details"
            iconName: "documentinfo"
            enabled: loader.readable
            reason: loader.unreadable
            onTriggered: loader.window.showDetails(loader.url)
        }
        ContextMenuItem {
            text: "Film…"
            iconName: "view-filter"
            enabled: false
            reason: "The film editor is not part of this version."
        }
        ContextMenuItem {
            text: "Import"
            iconName: "checkmark"
            enabled: loader.readable
            reason: loader.unreadable
            onTriggered: loader.window.mark(loader.url, "Keep")
        }
        ContextMenuItem {
            text: "Skip"
            iconName: "flag"
            enabled: loader.readable
            reason: loader.unreadable
            onTriggered: loader.window.mark(loader.url, "For Cleanup")
        }
        ContextMenuItem {
            text: "Clear Mark"
            enabled: loader.readable
            reason: loader.unreadable
            onTriggered: loader.window.mark(loader.url, "")
        }
        ContextMenuItem {
            text: "Show in Finder"
            iconName: "document-open-folder"
            enabled: loader.readable
            reason: loader.unreadable
            onTriggered: FileBrowser.reveal(loader.url)
        }
    }
}
