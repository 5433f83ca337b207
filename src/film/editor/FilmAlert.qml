import QtQuick
import QtQuick.Layouts
import Lumisort.FilmEditor
import Lumisort.Ui

/// The message of an editor.
Sheet {
    id: sheet
    required property FilmEditorModel editor

    title: "Film"
    width: 420
    visible: editor.errorMessage !== "" && !editor.savePanelOpen
    onAboutToShow: ok.focus = true
    onClosed: editor.dismissError()

    contentItem: ColumnLayout {
        spacing: Theme.l
        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        SelectableText {
            text: sheet.editor.errorMessage
            color: Theme.text
            font.pixelSize: Theme.bodySize
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(implicitHeight, 160)
        }
        RowLayout {
            spacing: Theme.s
            Layout.alignment: Qt.AlignRight
            PushButton {
                text: "Reload Photo"
                visible: sheet.editor.sourceChanged
                onClicked: sheet.editor.reload()
            }
            PushButton {
                id: ok
                text: "OK"
                prominent: true
                onClicked: sheet.editor.dismissError()
            }
        }
    }
}
