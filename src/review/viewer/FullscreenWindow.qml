import QtQuick
import QtQuick.Window
import Lumisort.Actions
import Lumisort.Marks
import Lumisort.Ui
import Lumisort.Viewer

/// One photo as large as the screen. The colours around it are always dark.
Window {
    id: window
    required property FullscreenPhotoState state
    readonly property color backdrop: Qt.rgba(0, 0, 0, 0.45)
    /// Whether the pointer moved within the last seconds: then it and the photo's name are shown.
    property bool awake: true

    title: "Photo"
    color: "black"

    Item {
        anchors.fill: parent
        focus: true
        Keys.onPressed: event => event.accepted = window.state.actions.press(event.key, event.modifiers, event.isAutoRepeat)

        OriginalView {
            anchors.fill: parent
            url: window.state.photo.url
            name: Theme.line(window.state.photo.name)
            view: window.state.view
            text: Theme.photoText
            secondary: "#a8a8a8"
            warning: Theme.photoSkip
        }
        FullscreenEdge {
            anchors.left: parent.left
            command: window.state.actions.of(ActionSet.PreviousPhoto)
        }
        FullscreenEdge {
            anchors.right: parent.right
            command: window.state.actions.of(ActionSet.NextPhoto)
        }
        Item {
            id: close
            anchors.right: parent.right
            width: 80
            height: 80
            opacity: window.awake || closeHover.hovered ? 1 : 0
            Accessible.role: Accessible.Button
            Accessible.name: window.state.actions.of(ActionSet.Close).text
            Accessible.description: tip.text
            Accessible.onPressAction: window.state.actions.of(ActionSet.Close).trigger()
            Rectangle {
                anchors.centerIn: parent
                width: 40
                height: 40
                radius: 20
                color: closeHover.hovered ? Qt.rgba(0.25, 0.25, 0.25, 0.8) : window.backdrop
                Icon {
                    anchors.centerIn: parent
                    name: "cross"
                    size: 18
                    color: Theme.photoText
                }
            }
            HoverHandler { id: closeHover }
            TapHandler { onTapped: window.state.actions.of(ActionSet.Close).trigger() }
            Tip {
                id: tip
                text: "Close (Esc)"
                shown: closeHover.hovered
            }
            Behavior on opacity { NumberAnimation { duration: Theme.motion } }
        }
        Rectangle {
            anchors.left: parent.left
            anchors.bottom: parent.bottom
            anchors.margins: Theme.l
            width: Math.min(about.implicitWidth + 2 * Theme.m, parent.width - 2 * Theme.l)
            height: 26
            radius: 13
            color: Theme.photoBackdrop
            opacity: window.awake ? 1 : 0
            Caption {
                id: about
                anchors.fill: parent
                anchors.leftMargin: Theme.m
                anchors.rightMargin: Theme.m
                color: Theme.photoText
                text: Theme.leading(Theme.line(window.state.photo.name)) + " · " + (window.state.index + 1) + " of "
                      + window.state.count
            }
            Behavior on opacity { NumberAnimation { duration: Theme.motion } }
        }
        Rectangle {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: Theme.l
            width: badge.implicitWidth + 2 * Theme.m
            height: 26
            radius: 13
            visible: badge.decided
            color: Theme.photoBackdrop
            DecisionLabel {
                id: badge
                anchors.centerIn: parent
                decision: window.state.decision
                overPhoto: true
            }
        }
        ProtectionSheet { question: window.state.question }
        HoverHandler {
            cursorShape: window.awake ? Qt.ArrowCursor : Qt.BlankCursor
            onPointChanged: {
                window.awake = true;
                rest.restart();
            }
        }
        Timer {
            id: rest
            running: true
            interval: 2500
            onTriggered: window.awake = closeHover.hovered
        }
    }
}
