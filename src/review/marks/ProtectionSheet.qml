import QtQuick
import QtQuick.Layouts
import QtQuick.Window
import Lumisort.Marks
import Lumisort.Ui

/// Asks before protected photos are skipped, in the window that has the keyboard. Made when it is first needed.
Loader {
    id: loader
    required property ProtectionQuestion question
    /// Whether this window asks where no window of the program has the keyboard.
    property bool otherwise: false

    active: false
    Connections {
        target: loader.question
        function onChanged() {
            if (!loader.question.open) {
                if (loader.item) loader.item.close();
            } else if (loader.Window.active || loader.otherwise && Qt.application.state !== Qt.ApplicationActive) {
                loader.active = true;
                loader.item.open();
            }
        }
    }
    sourceComponent: Sheet {
        id: sheet
        title: loader.question.title
        width: Math.min(480, parent.width - 2 * Theme.l)
        onAboutToHide: if (loader.question.open) loader.question.answer(ProtectionQuestion.SkipNone)

        contentItem: ColumnLayout {
            spacing: Theme.m
            Headline {
                text: sheet.title
                Layout.fillWidth: true
            }
            Body {
                text: Theme.line(loader.question.reason)
                wrapMode: Text.Wrap
                maximumLineCount: 6
                Layout.fillWidth: true
            }
            Body {
                text: "Skipped photos are left out of the import. Files on disk stay unchanged."
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
                    onClicked: loader.question.answer(ProtectionQuestion.SkipNone)
                }
                PushButton {
                    visible: loader.question.others > 0
                    text: loader.question.others === 1 ? "Skip the Other Photo" : "Skip the Other " + loader.question.others
                    onClicked: loader.question.answer(ProtectionQuestion.SkipOthers)
                }
                PushButton {
                    text: "Skip Anyway"
                    destructive: true
                    onClicked: loader.question.answer(ProtectionQuestion.SkipAll)
                }
            }
        }
    }
}
