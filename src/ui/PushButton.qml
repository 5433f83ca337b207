import QtQuick
import Lumisort.Ui
import QtQuick.Templates as T

/// A button with a text, an icon or both. Given a command it shows and triggers that one.
T.Button {
    id: button

    property Command command: null
    property string iconName: command ? command.iconName : ""
    property bool prominent: false
    property bool destructive: false
    property color tint: destructive ? Theme.error : prominent ? Theme.accentText : Theme.text
    /// Its keys, shown beside the text.
    property string hint: command ? command.hint : ""
    /// What it does, where the text does not say so; the tooltip.
    property string help: ""
    /// Why it is disabled; the tooltip then.
    property string reason: command ? command.reason : ""
    readonly property color foreground: enabled ? tint : Theme.disabled

    text: command ? command.text : ""
    enabled: command ? command.enabled : true
    onClicked: if (command) command.trigger()

    implicitWidth: Math.max(Theme.controlHeight, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Theme.controlHeight
    leftPadding: Theme.m
    rightPadding: Theme.m
    // A click leaves the keyboard where it is: among the photos.
    focusPolicy: Qt.TabFocus
    // A key that is held must not press what gets the keyboard next.
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) clicked(); }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) clicked(); }
    Accessible.name: text
    Accessible.description: enabled ? help : reason

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.s
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.iconName !== ""
                name: button.iconName
                color: button.foreground
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                textFormat: Text.PlainText
                font.pixelSize: Theme.bodySize
                font.weight: button.prominent ? Font.DemiBold : Font.Normal
                color: button.foreground
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.hint !== ""
                text: button.hint
                textFormat: Text.PlainText
                font.pixelSize: Theme.captionSize
                color: button.enabled ? (button.prominent ? Theme.accentText : Theme.secondary) : Theme.disabled
            }
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        border.width: button.flat || (button.prominent && button.enabled) ? 0 : 1
        border.color: Theme.edge
        color: {
            if (button.prominent && button.enabled)
                return button.down ? Theme.accentPressed : button.hovered ? Theme.accentHover : Theme.accent;
            if (!button.enabled)
                return button.flat ? "transparent" : Theme.surface;
            if (button.down)
                return Theme.pressed;
            if (button.hovered)
                return Theme.hover;
            return button.flat ? "transparent" : Theme.raised;
        }
        Behavior on color {
            ColorAnimation { duration: Theme.motion }
        }
        FocusRing { control: button }
    }

    // A disabled control has no hover of its own, so that the reason needs a handler beside it.
    HoverHandler { id: pointer }
    Tip {
        text: button.enabled ? button.help : button.reason
        shown: (pointer.hovered || button.visualFocus) && !button.down
    }
}
