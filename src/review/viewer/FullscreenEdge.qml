import QtQuick
import Lumisort.Ui

/// An edge of the full-screen viewer that steps to the photo beyond it.
Item {
    id: edge
    required property Command command

    anchors.top: parent.top
    anchors.bottom: parent.bottom
    anchors.topMargin: 64
    anchors.bottomMargin: 64
    width: 100
    Accessible.role: Accessible.Button
    Accessible.name: command.text
    Accessible.onPressAction: command.trigger()

    Rectangle {
        anchors.centerIn: parent
        width: 60
        height: 60
        radius: 30
        color: Qt.rgba(0, 0, 0, 0.45)
        opacity: hover.hovered && edge.command.enabled ? 1 : 0
        Icon {
            anchors.centerIn: parent
            name: edge.command.iconName
            size: 28
            color: Theme.photoText
        }
        Behavior on opacity { NumberAnimation { duration: Theme.motion } }
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: edge.command.trigger() }
}
