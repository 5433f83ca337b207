import QtQuick
import QtQuick.Layouts
import Lumisort.App
import Lumisort.Ui

/// Asks before the program ends while photos are being copied.
Sheet {
    id: sheet
    required property QtObject lifecycle
    title: "Quit during the import?"
    width: 440
    visible: lifecycle.question !== ""
    onRejected: lifecycle.answer(false) // at once: the question goes on changing while the sheet fades

    contentItem: ColumnLayout {
        spacing: Theme.m
        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        Body {
            text: sheet.lifecycle.question
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        Body {
            text: "Cancelling keeps the photos copied so far and writes the report beside them."
            color: Theme.secondary
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.s
            Layout.topMargin: Theme.s
            Layout.alignment: Qt.AlignRight
            PushButton {
                text: "Continue Import"
                focus: true
                onClicked: sheet.lifecycle.answer(false)
            }
            PushButton {
                text: "Cancel Import and Quit"
                destructive: true
                onClicked: sheet.lifecycle.answer(true)
            }
        }
    }
}
