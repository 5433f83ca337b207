import QtQuick
import QtQuick.Window
import Lumisort.Review
import Lumisort.Ui

/// One photo among others: its preview, its name, whether it is selected, what was decided.
Item {
    id: card
    required property LibraryWindow window
    property string url
    property string name
    /// Beside the name: the place in a group.
    property string note
    property int position: -1
    property bool readable: true
    property string decision
    property real pictureHeight: 150
    // Asked again with every revision.
    readonly property bool selected: window.selectionRevision >= 0 && window.isSelected(url)
    readonly property bool current: window.cursor.position === position
    /// Whether the keyboard is among the photos.
    property bool keyboardHere: false
    signal menuWanted(real x, real y)

    Accessible.role: Accessible.ListItem
    Accessible.name: name + (decision === "Keep" ? ", Import" : decision !== "" ? ", Skip" : "")
                     + (readable ? "" : ", Unavailable")
    Accessible.selectable: readable
    Accessible.selected: selected
    Accessible.focusable: true
    Accessible.focused: current && keyboardHere
    Accessible.onPressAction: window.cursor.click(position, false)

    Rectangle {
        id: tile
        width: parent.width
        height: card.pictureHeight
        radius: Theme.tileRadius
        color: Theme.tile
        opacity: card.readable ? 1 : 0.6

        Image {
            id: picture
            anchors.fill: parent
            anchors.margins: 4
            // Without a preview it is ready and has no size.
            readonly property bool shows: status === Image.Ready && implicitWidth > 0
            visible: card.readable
            asynchronous: true
            cache: false
            fillMode: Image.PreserveAspectFit
            mipmap: true
            opacity: card.decision === "For Cleanup" ? 0.4 : 1
            source: card.readable && card.url !== "" ? Thumbnails.source(card.url, card.window.model.thumbnailRevision) : ""
            // In steps, so that dragging the size slider does not ask for every size in between.
            readonly property int side: Math.min(900, Math.ceil(tile.width * Screen.devicePixelRatio / 150) * 150)
            sourceSize: Qt.size(side, side)
            Accessible.ignored: true
        }
        Icon {
            anchors.centerIn: parent
            visible: card.readable && !picture.shows
            name: "photo"
            size: 32
            color: Theme.disabled
            opacity: picture.status === Image.Loading ? 0.5 : 1
        }
        Column {
            anchors.centerIn: parent
            visible: !card.readable
            spacing: Theme.xs
            Icon {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "drive-removable-media"
                size: 22
                color: Theme.secondary
            }
            Caption { text: "Unavailable" }
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.tileRadius
            color: "transparent"
            border.width: card.selected ? 3 : hover.hovered ? 1 : 0
            border.color: card.selected ? Theme.accentLine : Theme.secondary
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: Theme.tileRadius + 3
            visible: card.current && card.keyboardHere
            color: "transparent"
            border.width: 2
            border.color: Theme.text
        }
        Rectangle {
            x: Theme.s
            y: Theme.s
            width: 22
            height: 22
            radius: 11
            visible: card.selected
            color: Theme.accent
            border.color: Theme.accentText
            Icon {
                anchors.centerIn: parent
                name: "checkmark"
                color: Theme.accentText
            }
        }
        Rectangle {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: Theme.s
            width: badge.implicitWidth + 2 * Theme.s
            height: 22
            radius: 11
            visible: card.decision !== ""
            color: Qt.rgba(0, 0, 0, 0.75)
            Row {
                id: badge
                anchors.centerIn: parent
                spacing: Theme.xs
                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    size: 14
                    name: card.decision === "Keep" ? "checkmark" : "flag"
                    color: card.decision === "Keep" ? "#66c493" : "#f0a35a"
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: tile.width > 110
                    text: card.decision === "Keep" ? "Import" : "Skip"
                    font.pixelSize: Theme.captionSize
                    font.weight: Font.DemiBold
                    color: "#ffffff"
                }
            }
        }
    }

    Item {
        anchors.top: tile.bottom
        anchors.topMargin: Theme.xs
        width: parent.width
        height: 18
        StyledText {
            anchors.left: parent.left
            anchors.right: note.left
            anchors.rightMargin: note.text === "" ? 0 : Theme.s
            height: parent.height
            text: card.name
            font.pixelSize: Theme.captionSize
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Caption {
            id: note
            anchors.right: parent.right
            height: parent.height
            text: card.note
            Accessible.ignored: true
        }
    }

    HoverHandler { id: hover }
    TapHandler {
        acceptedModifiers: Qt.KeyboardModifierMask
        onSingleTapped: point => card.window.cursor.click(card.position, point.modifiers & Qt.ShiftModifier)
        onDoubleTapped: card.window.cursor.doubleClick(card.position)
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => card.menuWanted(point.position.x, point.position.y)
    }
}
