import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumisort.Ui

/// A row of the sidebar: a section or a folder.
T.Button {
    id: row
    property string iconName
    property string help
    property int count: -1
    property bool current: false
    /// A word about its state, such as "Offline".
    property string note
    /// Whether it shows a lock.
    property bool locked: false
    /// Accessible name of its menu; "" where it has none.
    property string menuLabel
    signal menuWanted(var place)

    implicitHeight: 32
    Layout.fillWidth: true
    focusPolicy: Qt.TabFocus
    leftPadding: Theme.s
    rightPadding: Theme.s
    Accessible.name: text + (count >= 0 ? ", " + count : "") + (locked ? ", protected" : "") + (note ? ", " + note : "")
    Accessible.checked: current

    contentItem: RowLayout {
        spacing: Theme.s
        Icon {
            name: row.iconName
            color: label.color
        }
        Body {
            id: label
            text: row.text
            font.weight: row.current ? Font.DemiBold : Font.Normal
            color: Theme.text
            Layout.fillWidth: true
            Accessible.ignored: true
        }
        Icon {
            visible: row.locked
            name: "object-locked"
            color: row.current ? Theme.text : Theme.secondary
        }
        Caption {
            visible: row.note !== ""
            text: row.note
            color: Theme.skip
            Accessible.ignored: true
        }
        Caption {
            visible: row.count >= 0
            text: row.count.toLocaleString(Qt.locale("en"), "f", 0)
            color: row.current ? Theme.text : Theme.secondary
            Accessible.ignored: true
        }
        IconButton {
            id: more
            visible: row.menuLabel !== ""
            flat: true
            iconName: "view-more-horizontal-symbolic"
            label: row.menuLabel
            opacity: pointer.hovered || visualFocus || row.visualFocus ? 1 : 0.5
            Layout.preferredHeight: 24
            Layout.preferredWidth: 24
            onClicked: row.menuWanted({ item: more, x: 0, y: more.height })
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: row.current ? Theme.accentFill : row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"
        FocusRing { control: row }
    }
    HoverHandler { id: pointer }
    TapHandler {
        acceptedButtons: Qt.RightButton
        enabled: row.menuLabel !== ""
        onTapped: point => row.menuWanted({ item: row, x: point.position.x, y: point.position.y })
    }
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) clicked(); }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) clicked(); }
    Keys.onMenuPressed: if (menuLabel !== "") menuWanted({ item: row, x: Theme.xl, y: row.height })
    Tip {
        text: row.help
        shown: pointer.hovered && !more.hovered
    }
}
