import QtQuick
import QtQuick.Templates as T
import Lumisort.Ui

/// A button over the canvas, which is dark in both themes.
T.Button {
    id: button
    property string iconName: ""
    property string help: text
    property string hint: ""

    implicitHeight: Theme.controlHeight
    implicitWidth: row.implicitWidth + 2 * Theme.m
    focusPolicy: Qt.TabFocus
    Accessible.name: text
    Accessible.description: help
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) click(); }

    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.s
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.iconName !== ""
                name: button.iconName
                color: label.color
            }
            Text {
                id: label
                text: button.text
                textFormat: Text.PlainText
                font.pixelSize: Theme.bodySize
                font.weight: button.checked ? Font.DemiBold : Font.Normal
                color: !button.enabled ? "#787878" : button.checked ? "#ffffff" : "#c8c8c8"
            }
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: button.checked ? "#4a4a4a" : button.down ? "#3e3e3e" : button.hovered ? "#383838" : "#262626"
        border.color: Qt.rgba(1, 1, 1, 0.08)
        FocusRing { control: button }
    }
    HoverHandler { id: pointer }
    Tip {
        text: button.help + (button.hint ? " (" + button.hint + ")" : "")
        shown: (pointer.hovered || button.visualFocus) && !button.down
    }
}
