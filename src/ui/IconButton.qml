import QtQuick

/// A button with an icon alone; its text is the accessible name and, with the keys, the tooltip.
PushButton {
    id: button
    property string label: command ? command.text : ""

    text: ""
    help: label + (hint ? " (" + hint + ")" : "")
    leftPadding: 7
    rightPadding: 7
    Accessible.name: label
    contentItem: Item {
        implicitWidth: 16
        implicitHeight: 16
        Icon {
            anchors.centerIn: parent
            name: button.iconName
            color: button.foreground
        }
    }
}
