import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// What one photo offers.
ContextMenu {
    id: menu
    required property LibraryWindow window
    property string url
    readonly property bool readable: window.marksRevision >= 0 && window.isReadable(url)
    readonly property string unreadable: "This photo is unavailable."

    function show(item, x, y, photo) {
        url = photo;
        popup(item, x, y);
    }

    ContextMenuItem {
        text: "Show Details"
        iconName: "documentinfo"
        enabled: menu.readable
        reason: menu.unreadable
        onTriggered: menu.window.showDetails(menu.url)
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
        enabled: menu.readable
        reason: menu.unreadable
        onTriggered: menu.window.mark(menu.url, "Keep")
    }
    ContextMenuItem {
        text: "Skip"
        iconName: "flag"
        enabled: menu.readable
        reason: menu.unreadable
        onTriggered: menu.window.mark(menu.url, "For Cleanup")
    }
    ContextMenuItem {
        text: "Clear Mark"
        enabled: menu.readable
        reason: menu.unreadable
        onTriggered: menu.window.mark(menu.url, "")
    }
    ContextMenuItem {
        text: "Show in Finder"
        iconName: "document-open-folder"
        enabled: menu.readable
        reason: menu.unreadable
        onTriggered: FileBrowser.reveal(menu.url)
    }
}
