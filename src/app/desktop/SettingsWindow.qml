import QtQuick
import Lumisort.Ui

Window {
    id: window

    readonly property int padding: 30

    width: 430
    // No bounds: a window manager would hold it to those of the moment before its text was laid out.
    height: column.height + 2 * padding
    minimumWidth: width
    maximumWidth: width
    flags: Qt.Dialog
    title: "Settings"
    color: Theme.window

    Shortcut {
        sequences: ["Esc", StandardKey.Close]
        onActivated: window.close()
    }

    Column {
        id: column
        x: window.padding
        y: window.padding
        width: parent.width - 2 * window.padding
        spacing: Theme.s

        Title { text: "Lumisort" }
        Body { text: "Preview 0.10.2" }
        Body {
            width: parent.width
            wrapMode: Text.Wrap
            color: Theme.secondary
            text: "Library saved locally. Organize copies files; originals stay in place."
        }
    }
}
