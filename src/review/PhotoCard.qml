import QtQuick
import QtQuick.Window
import Lumisort.Marks
import Lumisort.Review
import Lumisort.Ui

/// The card of one photo: preview, name, selection and decision. A screen holds dozens, which are reused while one
/// scrolls: parts that few photos need are loaded only for those.
Item {
    id: card
    required property LibraryWindow window
    property string url
    property string name
    /// Beside the name: the place in a group.
    property string note
    property int position: -1
    property bool readable: true
    property bool selected: false
    property int decision: Decision.None
    property real pictureHeight: 150
    readonly property bool current: window.cursor.position === position
    /// Whether the list of photos has the keyboard.
    property bool keyboardHere: false
    signal menuWanted(real x, real y)

    Accessible.role: Accessible.ListItem
    Accessible.name: name + (decision === Decision.Keep ? ", Import" : decision === Decision.Skip ? ", Skip" : "")
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
        border.width: card.selected ? 3 : hover.hovered ? 1 : 0
        border.color: card.selected ? Theme.accentLine : Theme.secondary

        Image {
            id: picture
            anchors.fill: parent
            anchors.margins: 4
            // Without a preview it is ready and has no size.
            readonly property bool shows: status === Image.Ready && implicitWidth > 0
            visible: shows // while it waits it would show the picture of the photo before
            asynchronous: true
            cache: false
            fillMode: Image.PreserveAspectFit
            mipmap: true
            opacity: card.decision === Decision.Skip ? 0.4 : 1
            source: card.readable && card.url !== "" ? Thumbnails.source(card.url, card.window.library.thumbnailRevision) : ""
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
        Loader {
            anchors.centerIn: parent
            active: !card.readable
            sourceComponent: Column {
                spacing: Theme.xs
                Icon {
                    anchors.horizontalCenter: parent.horizontalCenter
                    name: "drive-removable-media"
                    size: 22
                    color: Theme.secondary
                }
                Caption { text: "Unavailable" }
            }
        }
        Loader {
            anchors.fill: parent
            anchors.margins: -3
            active: card.current && card.keyboardHere
            sourceComponent: Rectangle {
                radius: Theme.tileRadius + 3
                color: "transparent"
                border.width: 2
                border.color: Theme.text
            }
        }
        Loader {
            x: Theme.s
            y: Theme.s
            active: card.selected
            sourceComponent: Rectangle {
                width: 22
                height: 22
                radius: 11
                color: Theme.accent
                border.color: Theme.accentText
                Icon {
                    anchors.centerIn: parent
                    name: "checkmark"
                    color: Theme.accentText
                }
            }
        }
        Loader {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: Theme.s
            active: card.decision !== Decision.None
            sourceComponent: DecisionBadge {
                decision: card.decision
                brief: tile.width <= 110
            }
        }
    }

    StyledText {
        anchors.left: parent.left
        anchors.right: note.left
        anchors.rightMargin: card.note === "" ? 0 : Theme.s
        anchors.top: tile.bottom
        anchors.topMargin: Theme.xs
        height: 18
        text: Theme.line(card.name)
        font.pixelSize: Theme.captionSize
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Loader {
        id: note
        anchors.right: parent.right
        anchors.top: tile.bottom
        anchors.topMargin: Theme.xs
        height: 18
        active: card.note !== ""
        sourceComponent: Caption {
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
