import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// Asks before a folder leaves the library.
Sheet {
    id: sheet
    required property LibraryWindow window
    title: "Remove folder from library?"
    width: 420
    visible: window.folderToRemove !== ""
    onClosed: window.answerRemoval(false)

    contentItem: ColumnLayout {
        spacing: Theme.m
        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        Body {
            text: "Only saved records and marks are removed. Files on disk stay unchanged."
            color: Theme.secondary
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.s
            Layout.topMargin: Theme.s
            Layout.alignment: Qt.AlignRight
            PushButton {
                text: "Cancel"
                focus: true
                onClicked: sheet.window.answerRemoval(false)
            }
            PushButton {
                text: "Remove from Library"
                destructive: true
                onClicked: sheet.window.answerRemoval(true)
            }
        }
    }
}
