import QtQuick
import QtQuick.Templates as T

/// How far something is, 0 to 1.
T.ProgressBar {
    id: bar
    property string label
    implicitWidth: 220
    implicitHeight: 6
    Accessible.name: label

    background: Rectangle {
        radius: 3
        color: Theme.dark ? "#3c3c3c" : "#d4d4d4"
    }
    contentItem: Item {
        Rectangle {
            width: bar.visualPosition * parent.width
            height: parent.height
            radius: 3
            color: Theme.accentLine
        }
    }
}
