import QtQuick
import Lumisort.Ui

/// Asks for a folder, or for a file, through the desktop's own dialog, or through the program's where the desktop has none. Neither is
/// loaded before the first time.
Loader {
    id: chooser
    property string title
    /// Text of the button that chooses.
    property string acceptLabel: "Choose"
    /// Whether a folder that does not exist may be chosen, which makes it.
    property bool mayMake: false
    /// Name patterns ("*.json") of the files of which one is chosen; none where a folder is.
    property var files: []
    property url startingAt
    readonly property bool opened: item !== null && item.visible
    /// The desktop has been asked and has not answered yet.
    property bool asking: false
    /// The folder, or the file.
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
            if (!hasChooser) {
                properties.mayMake = chooser.mayMake;
                properties.files = chooser.files;
            } else if (chooser.files.length > 0) {
                properties.nameFilters = chooser.files;
            }
            const panel = chooser.files.length > 0 ? "FilePanel.qml" : "FolderPanel.qml";
            chooser.setSource(hasChooser ? panel : "FolderSheet.qml", properties);
            chooser.show();
        }
    }
    Connections {
        target: chooser.item
        function onAccepted() { chooser.chosen(chooser.item.selectedFolder); }
    }
}
