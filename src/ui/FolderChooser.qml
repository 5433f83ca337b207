import QtQuick

/// Asks for folders through the desktop's own dialog, or Qt Quick's where the desktop has none. Nothing of it is
/// loaded before it is first asked.
Loader {
    id: chooser
    property string title
    signal chosen(url folder)

    /// `startingAt` is a file URL, or "" for the place of the last time.
    function choose(startingAt) {
        if (!item) setSource("FolderPanel.qml", { title: title });
        if (startingAt) item.currentFolder = startingAt;
        item.open();
    }

    Connections {
        target: chooser.item
        function onAccepted() { chooser.chosen(chooser.item.selectedFolder); }
    }
}
