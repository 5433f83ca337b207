import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// Says what protecting a folder means, before it is protected.
Sheet {
    id: sheet
    required property LibraryWindow window
    title: "Protect this folder?"
    width: 420
    visible: window.folderToProtect !== ""
    onClosed: window.answerProtection(false)

    contentItem: ColumnLayout {
        spacing: Theme.m
        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        Body {
            text: "Its photos are never suggested for skipping, and marking one Skip asks first. This holds for all folders inside it. Files on disk stay unchanged."
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
                onClicked: sheet.window.answerProtection(false)
            }
            PushButton {
                text: "Protect"
                prominent: true
                onClicked: sheet.window.answerProtection(true)
            }
        }
    }
}
