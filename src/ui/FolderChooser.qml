import QtQuick
import Lumisort.Ui

/// Asks for a folder through the desktop's own dialog, or the program's where the desktop has none. Nothing of
/// it is loaded before it is first asked.
Loader {
    id: chooser
    property string title
    /// Whether a folder that is not there yet may be chosen; it is made then.
    property bool mayMake: false
    property url startingAt
    readonly property bool opened: item !== null && item.visible
    signal chosen(url folder)

    /// `folder` is a file URL, or "" for the place of the last time.
    function choose(folder) {
        startingAt = folder;
        item ? show() : places.askDesktop();
    }
    function show() {
        if (startingAt.toString() !== "")
            item.currentFolder = startingAt;
        item.open();
    }

    FolderPlaces {
        id: places
        onDesktopAnswered: hasChooser => {
            if (hasChooser)
                chooser.setSource("FolderPanel.qml", { title: chooser.title });
            else
                chooser.setSource("FolderSheet.qml", { title: chooser.title, mayMake: chooser.mayMake });
            chooser.show();
        }
    }
    Connections {
        target: chooser.item
        function onAccepted() { chooser.chosen(chooser.item.selectedFolder); }
    }
}
