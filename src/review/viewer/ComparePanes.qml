import QtQuick
import Lumisort.Actions
import Lumisort.Ui
import Lumisort.Viewer

/// The compared originals beside each other, with one view for all. Columns get narrower with their number, down to a
/// width at which they scroll with the active one.
Flickable {
    id: panes
    required property CompareState state
    /// Whether the photos are held; what is not held is not decoded either.
    property bool holds: true
    readonly property int count: state.photos.length
    readonly property real spacing: 18
    readonly property real columnWidth: Math.max(160, (width - (count - 1) * spacing) / Math.max(1, count))

    function focusActive() {
        const pane = repeater.itemAt(state.active);
        if (pane)
            pane.picture.forceActiveFocus();
    }
    function reveal() {
        const left = state.active * (columnWidth + spacing);
        contentX = Math.max(left + columnWidth - width, Math.min(left, contentX));
    }

    contentWidth: count * columnWidth + (count - 1) * spacing
    contentHeight: height
    interactive: false
    clip: contentWidth > width

    Connections {
        target: panes.state
        function onActiveChanged() { panes.reveal(); }
        function onPhotosChanged() { Qt.callLater(panes.focusActive); }
    }

    Connections {
        target: panes.state.actions.of(ActionSet.PreviousPhoto)
        function onTriggered() { Qt.callLater(panes.focusActive); } // once the state has followed
    }
    Connections {
        target: panes.state.actions.of(ActionSet.NextPhoto)
        function onTriggered() { Qt.callLater(panes.focusActive); } // once the state has followed
    }

    Row {
        spacing: panes.spacing
        Repeater {
            id: repeater
            model: panes.holds ? panes.state.photos : []
            Item {
                id: pane
                required property int index
                required property var modelData
                readonly property bool isActive: panes.state.active === index
                readonly property int shown: isActive && panes.state.flipped ? panes.state.shownIn(index) : index
                readonly property var photo: panes.state.photos[shown] ?? modelData
                readonly property Item picture: original

                width: panes.columnWidth
                height: panes.height

                Rectangle {
                    anchors.fill: parent
                    color: Qt.rgba(Theme.text.r, Theme.text.g, Theme.text.b, 0.06)
                }
                OriginalView {
                    id: original
                    anchors.fill: parent
                    url: pane.photo.url
                    name: Theme.line(pane.photo.name)
                    view: panes.state.view
                    leads: pane.isActive
                    activeFocusOnTab: true
                    onActiveFocusChanged: if (activeFocus) panes.state.active = pane.index
                }
                // Rounds the corners: the sheet's colour outside of them.
                Rectangle {
                    readonly property int reach: 5
                    anchors.fill: parent
                    anchors.margins: -reach
                    radius: Theme.tileRadius + reach
                    color: "transparent"
                    border.width: reach
                    border.color: Theme.window
                }
                Rectangle {
                    anchors.fill: parent
                    radius: Theme.tileRadius
                    color: "transparent"
                    border.width: 2
                    border.color: pane.isActive ? Theme.accentLine : "transparent"
                }
                Rectangle {
                    x: Theme.s
                    y: Theme.s
                    width: Math.min(flipped.implicitWidth + 2 * Theme.s, parent.width - 2 * Theme.s)
                    height: 22
                    radius: 11
                    visible: pane.shown !== pane.index
                    color: Theme.photoBackdrop
                    Caption {
                        id: flipped
                        anchors.fill: parent
                        anchors.leftMargin: Theme.s
                        anchors.rightMargin: Theme.s
                        text: Theme.line(pane.photo.name)
                        color: Theme.photoText
                    }
                }
                ExclusiveTap {
                    onTapped: {
                        panes.state.active = pane.index;
                        original.forceActiveFocus();
                    }
                }
            }
        }
    }
}
