import QtQuick
import QtQuick.Layouts
import Lumisort.Ui

/// A picker with its label to the left.
RowLayout {
    id: row
    property string label
    property alias model: picker.model
    property alias currentIndex: picker.currentIndex
    signal activated(int index)

    Layout.fillWidth: true
    spacing: Theme.s
    Body {
        text: row.label
        color: Theme.secondary
        Layout.preferredWidth: 56
        Accessible.ignored: true // the picker has the name
    }
    Picker {
        id: picker
        label: row.label
        Layout.fillWidth: true
        onActivated: index => row.activated(index)
    }
}
