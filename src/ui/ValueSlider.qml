import QtQuick
import QtQuick.Templates as T

/// A value between two bounds.
T.Slider {
    id: slider
    property string label
    property string help: label

    implicitWidth: 120
    implicitHeight: 24
    focusPolicy: Qt.StrongFocus
    Accessible.name: label

    background: Rectangle {
        x: slider.leftPadding
        y: (slider.height - height) / 2
        width: slider.availableWidth
        height: 4
        radius: 2
        color: Theme.dark ? "#4a4a4a" : "#c8c8c8"
        Rectangle {
            width: slider.visualPosition * parent.width
            height: parent.height
            radius: 2
            color: Theme.accentLine
        }
    }
    handle: Rectangle {
        x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
        y: (slider.height - height) / 2
        width: 16
        height: 16
        radius: 8
        color: slider.pressed ? Theme.pressed : Theme.dark ? "#d8d8d8" : "#ffffff"
        border.color: Theme.edge
        FocusRing {
            control: slider
            radius: 10
        }
    }

    HoverHandler { id: pointer }
    Tip {
        text: slider.help
        shown: (pointer.hovered || slider.visualFocus) && !slider.pressed
    }
}
