import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Review
import Lumisort.Ui

/// The bar with a warning, which can be undone, or a notice.
Rectangle {
    id: bar
    required property LibraryWindow window
    readonly property bool warns: window.marks.warning !== ""
    /// It tells of something that was done as asked for.
    readonly property bool done: !warns && window.noticeCanBeUndone

    implicitHeight: row.implicitHeight + 2 * Theme.s
    color: Theme.raised
    Accessible.role: Accessible.AlertMessage
    Accessible.name: label.text

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }
    RowLayout {
        id: row
        anchors.fill: parent
        anchors.leftMargin: Theme.l
        anchors.rightMargin: Theme.l
        spacing: Theme.s
        Icon {
            name: bar.done ? "checkmark" : "data-warning"
            color: bar.done ? Theme.keep : Theme.skip
        }
        Body {
            id: label
            text: Theme.line(bar.warns ? bar.window.marks.warning : bar.window.notice)
            Layout.fillWidth: true
        }
        PushButton {
            visible: bar.warns
            command: bar.window.actions.of(ActionSet.Undo)
        }
        PushButton {
            visible: bar.done
            text: "Undo"
            iconName: "edit-undo"
            onClicked: bar.window.undoNotice()
        }
        IconButton {
            flat: true
            iconName: "window-close"
            label: "Dismiss"
            onClicked: {
                bar.window.marks.dismissWarning();
                bar.window.dismissNotice();
            }
        }
    }
}
