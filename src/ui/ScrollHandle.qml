import QtQuick
import QtQuick.Templates as T

/// The vertical scroll bar: thin, and there only when there is something to scroll.
T.ScrollBar {
    id: bar
    orientation: Qt.Vertical
    implicitWidth: 12
    minimumSize: 0.04
    visible: size < 1
    Accessible.ignored: true
    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: bar.pressed ? Theme.secondary : Theme.disabled
        opacity: bar.pressed || bar.hovered ? 1 : 0.6
    }
    padding: 3
}
