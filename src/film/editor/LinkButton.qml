import QtQuick
import QtQuick.Templates as T
import Lumisort.Ui

/// A button that looks like a link.
T.Button {
    id: link
    implicitHeight: 24
    implicitWidth: label.implicitWidth + Theme.xs
    focusPolicy: Qt.TabFocus
    Accessible.name: text
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) click(); }

    contentItem: Text {
        id: label
        text: link.text
        textFormat: Text.PlainText
        font.pixelSize: Theme.bodySize
        font.underline: link.hovered
        color: link.enabled ? Theme.accentLine : Theme.disabled
        verticalAlignment: Text.AlignVCenter
    }
    background: Item {
        FocusRing { control: link }
    }
}
