import QtQuick
import QtQuick.Templates as T

/// A choice of one from a list that opens. `activated` comes from the user alone.
T.ComboBox {
    id: picker
    property string label
    property string reason: ""

    implicitWidth: Math.max(110, text.implicitWidth + leftPadding + rightPadding)
    implicitHeight: Theme.controlHeight
    leftPadding: Theme.m
    rightPadding: 30
    Accessible.name: label

    contentItem: Text {
        id: text
        text: picker.displayText
        textFormat: Text.PlainText
        font.pixelSize: Theme.bodySize
        color: picker.enabled ? Theme.text : Theme.disabled
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    indicator: Icon {
        x: picker.width - width - Theme.s
        anchors.verticalCenter: parent.verticalCenter
        name: "go-down"
        color: picker.enabled ? Theme.secondary : Theme.disabled
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: !picker.enabled ? Theme.surface : picker.down ? Theme.pressed : picker.hovered ? Theme.hover : Theme.raised
        border.color: Theme.edge
        FocusRing { control: picker }
    }
    delegate: T.ItemDelegate {
        id: entry
        required property int index
        required property string modelData
        width: picker.width
        height: Theme.controlHeight
        highlighted: picker.highlightedIndex === index
        Accessible.name: modelData
        contentItem: Text {
            leftPadding: Theme.m
            text: entry.modelData
            textFormat: Text.PlainText
            font.pixelSize: Theme.bodySize
            font.weight: picker.currentIndex === entry.index ? Font.DemiBold : Font.Normal
            color: Theme.text
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            color: entry.highlighted ? Theme.accentFill : "transparent"
            radius: Theme.controlRadius
        }
    }
    popup: T.Popup {
        y: picker.height + Theme.xs
        width: picker.width
        height: contentItem.implicitHeight + 2 * padding
        padding: Theme.xs
        modal: true // the click that puts it away does nothing else
        T.Overlay.modal: Item {}
        contentItem: ListView {
            implicitHeight: contentHeight
            clip: true
            model: picker.popup.visible ? picker.delegateModel : null
            currentIndex: picker.highlightedIndex
        }
        background: Rectangle {
            radius: Theme.controlRadius
            color: Theme.raised
            border.color: Theme.hairline
        }
    }

    HoverHandler { id: pointer }
    Tip {
        text: picker.reason
        shown: pointer.hovered && !picker.enabled
    }
}
