import QtQuick
import QtQuick.Templates as T

/// On or off, with its text to the right.
T.CheckBox {
    id: toggle
    property string reason: ""

    implicitWidth: indicator.width + Theme.s + label.implicitWidth
    implicitHeight: Math.max(24, label.implicitHeight)
    spacing: Theme.s
    Accessible.name: text

    indicator: Rectangle {
        width: 18
        height: 18
        anchors.verticalCenter: parent.verticalCenter
        radius: Theme.xs
        color: toggle.checked ? (toggle.enabled ? Theme.accent : Theme.disabled) : Theme.raised
        border.width: toggle.checked ? 0 : 1
        border.color: Theme.secondary
        Icon {
            anchors.centerIn: parent
            visible: toggle.checked
            name: "checkmark"
            color: Theme.accentText
        }
        FocusRing { control: toggle }
    }
    contentItem: Text {
        id: label
        leftPadding: toggle.indicator.width + Theme.s
        text: toggle.text
        textFormat: Text.PlainText
        font.pixelSize: Theme.bodySize
        color: toggle.enabled ? Theme.text : Theme.disabled
        verticalAlignment: Text.AlignVCenter
    }

    HoverHandler { id: pointer }
    Tip {
        text: toggle.reason
        shown: pointer.hovered && !toggle.enabled
    }
}
