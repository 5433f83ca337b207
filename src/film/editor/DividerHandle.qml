import QtQuick
import Lumisort.FilmEditor
import Lumisort.Ui

/// The line between the original on the left and the print on the right; it can be dragged, or moved by the
/// arrow keys.
Item {
    id: handle
    required property FilmCanvas canvas
    /// Of the canvas's width.
    property real share: 0.5

    x: Math.round(share * canvas.width) - width / 2
    width: 24
    height: canvas.height
    activeFocusOnTab: visible
    Accessible.role: Accessible.Slider
    Accessible.name: "Divider between original and film"
    Keys.onLeftPressed: share = Math.max(0, share - 0.02)
    Keys.onRightPressed: share = Math.min(1, share + 0.02)

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(0, handle.canvas.place.y)
        width: handle.activeFocus ? 3 : 1
        height: Math.min(handle.canvas.height, handle.canvas.place.height)
        color: "#ffffff"
    }
    Rectangle {
        anchors.centerIn: parent
        width: 26
        height: 26
        radius: 13
        color: "#e0181818"
        border.color: "#ffffff"
        Icon {
            anchors.centerIn: parent
            name: "view-split-left-right"
            size: 14
            color: "#ffffff"
        }
    }
    HoverHandler { cursorShape: Qt.SplitHCursor }
    DragHandler {
        property real start
        target: null
        cursorShape: Qt.SplitHCursor
        onActiveChanged: if (active) start = handle.share
        onActiveTranslationChanged: if (active) handle.share = Math.max(0, Math.min(1, start + activeTranslation.x / handle.canvas.width))
    }
}
