import QtQuick
import QtQuick.Layouts

/// A title that shows and hides the content below it.
ColumnLayout {
    id: disclosure
    property string title
    property bool open: false
    default property alias content: body.data
    spacing: Theme.xs

    PushButton {
        flat: true
        leftPadding: Theme.xs
        iconName: disclosure.open ? "go-down" : "go-next"
        text: disclosure.title
        onClicked: disclosure.open = !disclosure.open
        Accessible.checkable: true
        Accessible.checked: disclosure.open
    }
    Item {
        id: body
        visible: disclosure.open
        Layout.fillWidth: true
        implicitHeight: childrenRect.height
    }
}
