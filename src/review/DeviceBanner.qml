import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// The bar that offers to browse a newly connected drive.
Rectangle {
    id: banner
    required property LibraryWindow window

    implicitHeight: row.implicitHeight + 2 * Theme.s
    color: Theme.accentFill
    Accessible.role: Accessible.AlertMessage
    Accessible.name: "New device detected: " + window.deviceName

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.leftMargin: Theme.l
        anchors.rightMargin: Theme.l
        spacing: Theme.s
        Icon { name: "drive-harddisk" }
        Body {
            text: "New device detected"
            font.weight: Font.DemiBold
        }
        Body {
            text: Theme.line(banner.window.deviceName)
            Layout.fillWidth: true
        }
        PushButton {
            text: "Browse"
            enabled: !banner.window.task.busy
            reason: "Please wait for the current task to finish."
            onClicked: banner.window.browseDevice()
        }
        PushButton {
            text: "Dismiss"
            flat: true
            onClicked: banner.window.dismissDevice()
        }
    }
}
