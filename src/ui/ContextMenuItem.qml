import QtQuick
import Lumisort.Ui
import QtQuick.Templates as T

T.MenuItem {
    id: item
    property Command command: null
    property string iconName: command ? command.iconName : ""
    property string hint: command ? command.hint : ""
    property string reason: command ? command.reason : ""

    text: command ? command.text : ""
    enabled: command ? command.enabled : true
    onTriggered: if (command) command.trigger()
    implicitWidth: row.implicitWidth + keys.implicitWidth + 2 * Theme.m + Theme.xl
    implicitHeight: 28
    Accessible.name: text

    contentItem: Item {
        Row {
            id: row
            x: Theme.s
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.s
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: item.iconName
                color: item.enabled ? Theme.text : Theme.disabled
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: item.text
                textFormat: Text.PlainText
                font.pixelSize: Theme.bodySize
                color: item.enabled ? Theme.text : Theme.disabled
            }
        }
        Text {
            id: keys
            anchors.right: parent.right
            anchors.rightMargin: Theme.s
            anchors.verticalCenter: parent.verticalCenter
            text: item.hint
            textFormat: Text.PlainText
            font.pixelSize: Theme.captionSize
            color: !item.enabled ? Theme.disabled : item.highlighted ? Theme.text : Theme.secondary
        }
    }
    background: Rectangle {
        radius: Theme.xs
        color: item.highlighted && item.enabled ? Theme.accentFill : "transparent"
    }
    HoverHandler { id: pointer }
    Tip {
        text: item.reason
        shown: pointer.hovered && !item.enabled
    }
}
