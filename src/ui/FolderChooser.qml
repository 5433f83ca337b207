import QtQuick
import Lumisort.Ui

/// Asks for a folder through the desktop's own dialog, or through the program's where the desktop has none. Neither is
/// loaded before the first time.
Loader {
    id: chooser
    property string title
    /// Text of the button that chooses.
    property string acceptLabel: "Choose"
    /// Whether a folder that does not exist may be chosen, which makes it.
    property bool mayMake: false
    property url startingAt
    readonly property bool opened: item !== null && item.visible
    /// The desktop has been asked and has not answered yet.
    property bool asking: false
    signal chosen(url folder)

    /// `folder` is a file URL, or "" for the place of the last time. Nothing happens while the chooser is open.
    function choose(folder) {
        if (opened || asking)
            return;
        startingAt = folder;
        asking = item === null;
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
            chooser.asking = false;
            const properties = { title: chooser.title, acceptLabel: chooser.acceptLabel };
            if (!hasChooser)
                properties.mayMake = chooser.mayMake;
            chooser.setSource(hasChooser ? "FolderPanel.qml" : "FolderSheet.qml", properties);
            chooser.show();
        }
    }
    Connections {
        target: chooser.item
        function onAccepted() { chooser.chosen(chooser.item.selectedFolder); }
    }
}
