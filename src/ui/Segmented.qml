import QtQuick
import QtQuick.Templates as T

/// A choice of one among a few, all on show. `activated` comes from the user alone.
T.Control {
    id: picker
    property var model: []
    property int currentIndex: 0
    property string label
    property string reason: ""
    signal activated(int index)

    implicitWidth: row.implicitWidth + 2
    implicitHeight: Theme.controlHeight
    Accessible.role: Accessible.PageTabList
    Accessible.name: label

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.surface
        border.color: Theme.edge
    }

    contentItem: Item {
        Row {
            id: row
            x: 1
            height: parent.height
            Repeater {
                model: picker.model
                T.Button {
                    id: segment
                    required property int index
                    required property string modelData
                    height: row.height
                    implicitWidth: label.implicitWidth + 2 * Theme.m
                    checked: index === picker.currentIndex
                    focusPolicy: Qt.TabFocus
                    onClicked: if (index !== picker.currentIndex) picker.activated(index)
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: modelData
                    Accessible.checked: checked
                    Keys.onRightPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
                    Keys.onLeftPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
                    contentItem: Text {
                        id: label
                        text: segment.modelData
                        textFormat: Text.PlainText
                        font.pixelSize: Theme.bodySize
                        font.weight: segment.checked ? Font.DemiBold : Font.Normal
                        color: !segment.enabled ? Theme.disabled : segment.checked ? Theme.text : Theme.secondary
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                    }
                    background: Rectangle {
                        anchors.fill: parent
                        anchors.margins: 1
                        radius: Theme.controlRadius - 1
                        color: segment.checked ? Theme.raised : segment.hovered ? Theme.hover : "transparent"
                        border.width: segment.checked ? 1 : 0
                        border.color: Theme.edge
                        FocusRing { control: segment }
                    }
                }
            }
        }
    }

    HoverHandler { id: pointer }
    Tip {
        text: picker.reason
        shown: pointer.hovered && !picker.enabled
    }
}
