import QtQuick
import Lumisort.Ui

/// What was decided for a photo, on a ground that is seen over any picture.
Rectangle {
    id: badge
    property string decision
    /// The icon alone.
    property bool brief: false
    readonly property bool imported: decision === "Keep"

    width: content.implicitWidth + 2 * Theme.s
    height: 22
    radius: 11
    color: Qt.rgba(0, 0, 0, 0.75)

    Row {
        id: content
        anchors.centerIn: parent
        spacing: Theme.xs
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            size: 14
            name: badge.imported ? "checkmark" : "flag"
            color: badge.imported ? "#66c493" : "#f0a35a"
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: !badge.brief
            text: badge.imported ? "Import" : "Skip"
            font.pixelSize: Theme.captionSize
            font.weight: Font.DemiBold
            color: "#ffffff"
        }
    }
}
