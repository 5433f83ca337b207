import QtQuick
import Lumisort.FilmEditor
import Lumisort.Ui

/// The window of one film editor.
Window {
    id: window
    required property FilmEditorModel editor

    title: "Film"
    width: 1100
    height: 760
    minimumWidth: 900
    minimumHeight: 640
    color: Theme.window

    FilmEditorView {
        anchors.fill: parent
        editor: window.editor
        focus: true
    }
    Shortcut {
        sequences: [StandardKey.Close]
        onActivated: window.close()
    }
}
