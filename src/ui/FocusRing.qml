import QtQuick

/// The outline of the control that has the keyboard focus.
Rectangle {
    property Item control: parent
    anchors.fill: parent
    anchors.margins: -2
    radius: Theme.controlRadius + 2
    color: "transparent"
    border.width: 2
    border.color: Theme.accentLine
    visible: control.visualFocus
}
