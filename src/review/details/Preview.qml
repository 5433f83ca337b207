import QtQuick
import Lumisort.Ui

/// The photo's preview with rounded corners, as wide as there is room, or the sign that there is none.
Item {
    id: preview
    property alias source: picture.source
    /// Height of a tall photo at most, and of the tile without a preview.
    property real tallest: 260
    property real tileHeight: 180
    readonly property bool ready: picture.status === Image.Ready && picture.implicitWidth > 0

    implicitHeight: ready ? picture.height : tileHeight

    Rectangle {
        anchors.fill: parent
        visible: !preview.ready
        radius: Theme.tileRadius
        color: Theme.tile
        Icon {
            anchors.centerIn: parent
            name: "photo"
            size: 32
            color: Theme.disabled
            opacity: picture.status === Image.Loading ? 0.5 : 1
        }
    }
    Image {
        id: picture
        readonly property real fit: Math.min(preview.width / implicitWidth, preview.tallest / implicitHeight)
        anchors.horizontalCenter: parent.horizontalCenter
        width: preview.ready ? Math.round(implicitWidth * fit) : 0
        height: preview.ready ? Math.round(implicitHeight * fit) : 0
        asynchronous: true
        cache: false
        mipmap: true
        Accessible.ignored: true
    }
    // A frame in the colour of the window covers the picture's corners.
    Rectangle {
        readonly property int thickness: Theme.tileRadius / 2
        anchors.fill: picture
        anchors.margins: -thickness
        visible: preview.ready
        radius: Theme.tileRadius + thickness
        color: "transparent"
        border.width: thickness
        border.color: Theme.window
    }
}
