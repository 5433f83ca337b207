import QtQuick
import QtQuick.Templates as T

/// Something is under way.
T.BusyIndicator {
    id: spinner
    property color color: Theme.secondary
    implicitWidth: 16
    implicitHeight: 16
    Accessible.name: "Working"

    contentItem: Item {
        id: wheel
        opacity: spinner.running ? 1 : 0
        Repeater {
            model: 8
            Rectangle {
                required property int index
                readonly property real angle: index * Math.PI / 4
                readonly property real reach: spinner.width / 2 - width / 2
                width: Math.max(2, spinner.width / 7)
                height: width
                radius: width / 2
                x: spinner.width / 2 + reach * Math.cos(angle) - width / 2
                y: spinner.height / 2 + reach * Math.sin(angle) - height / 2
                color: spinner.color
                opacity: 0.2 + 0.1 * index
            }
        }
        // Steps instead of a smooth turn: eight frames a second cost nothing beside a scan.
        Timer {
            running: spinner.running && spinner.visible
            repeat: true
            interval: 125
            onTriggered: wheel.rotation = (wheel.rotation + 45) % 360
        }
    }
}
