import QtQuick
import QtQuick.Layouts
import Lumisort.Details
import Lumisort.Ui

/// Asks for a photo's new name. A window of its own, because the panel can be narrower.
Window {
    id: sheet
    required property RenameState state

    title: "Rename Photo"
    flags: Qt.Dialog
    modality: Qt.WindowModal
    width: 360
    // No bounds: a window manager would hold it to those of the moment before an error came.
    height: form.implicitHeight + 2 * Theme.xl
    minimumWidth: width
    maximumWidth: width
    color: Theme.window
    visible: state.open
    onClosing: state.cancel()
    onVisibleChanged: if (visible) {
        // Over the upper part of the panel, as far as the screen reaches.
        const middle = transientParent.x + Math.round((transientParent.width - width) / 2);
        x = Math.max(Screen.virtualX, Math.min(middle, Screen.virtualX + Screen.width - width));
        y = transientParent.y + 80;
        requestActivate();
        stem.forceActiveFocus();
        stem.select(stem.length, 0); // a long name shows its beginning
    } else if (transientParent) {
        transientParent.requestActivate();
    }

    Shortcut {
        sequences: [StandardKey.Cancel]
        onActivated: sheet.state.cancel()
    }
    ColumnLayout {
        id: form
        x: Theme.xl
        y: Theme.xl
        width: sheet.width - 2 * Theme.xl
        spacing: Theme.l

        ColumnLayout {
            spacing: Theme.xs
            Headline { text: "Rename Photo" }
            Body {
                text: "Renames the original file."
                color: Theme.secondary
            }
        }
        RowLayout {
            spacing: Theme.s
            Field {
                id: stem
                label: "Filename"
                text: sheet.state.stem
                focus: true
                onTextEdited: sheet.state.stem = text
                onAccepted: sheet.state.rename()
                Accessible.description: error.text
                Layout.fillWidth: true
            }
            Body {
                text: sheet.state.suffix
                color: Theme.secondary
                visible: text !== ""
                Layout.maximumWidth: 120
            }
        }
        Body {
            id: error
            text: sheet.state.error
            color: Theme.error
            visible: text !== ""
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.s
            Layout.alignment: Qt.AlignRight
            PushButton {
                text: "Cancel"
                onClicked: sheet.state.cancel()
            }
            PushButton {
                text: "Rename"
                prominent: true
                enabled: sheet.state.canRename
                reason: "Enter a filename first."
                onClicked: sheet.state.rename()
            }
        }
    }
}
