import QtQuick
import Lumisort.FilmEditor
import Lumisort.Ui

/// The canvas beside the column of controls.
FocusScope {
    id: view
    required property FilmEditorModel editor

    FilmCanvasView {
        id: canvas
        anchors.left: parent.left
        anchors.right: column.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        editor: view.editor
        focus: true
    }
    Rectangle {
        id: column
        anchors.right: parent.right
        width: 281
        height: parent.height
        color: Theme.surface
        Rectangle {
            width: 1
            height: parent.height
            color: Theme.hairline
        }
        FilmControls {
            anchors.fill: parent
            anchors.leftMargin: 1
            editor: view.editor
            showsOriginal: canvas.showsOriginal
        }
    }
    FilmAlert { editor: view.editor }
    SavePanel { editor: view.editor }

    Shortcut {
        sequence: "Ctrl+Shift+C"
        onActivated: view.editor.copySettings()
    }
    Shortcut {
        sequence: "Ctrl+Shift+V"
        onActivated: view.editor.pasteSettings()
    }
    Shortcut {
        sequence: "Ctrl+E"
        onActivated: view.editor.exportPhoto()
    }
    Shortcut {
        sequences: [StandardKey.Undo]
        onActivated: view.editor.undo()
    }
    Shortcut {
        sequences: [StandardKey.Redo, "Ctrl+Shift+Z"]
        onActivated: view.editor.redo()
    }
}
