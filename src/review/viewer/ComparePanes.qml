import QtQuick
import Lumisort.Ui
import Lumisort.Viewer

/// The compared originals beside each other. Columns get narrower with their number down to a width at which they
/// scroll with the active one.
Flickable {
    id: panes
    property CompareState state
    readonly property int count: state ? state.photos.length : 0
    readonly property real spacing: 18
    readonly property real columnWidth: Math.max(160, (width - (count - 1) * spacing) / Math.max(1, count))

    function focusActive() {
        const pane = repeater.itemAt(state.active);
        if (pane)
            pane.forceActiveFocus();
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

    Row {
        spacing: panes.spacing
        Repeater {
            id: repeater
            model: panes.state ? panes.state.photos : []
            Item {
                id: pane
                required property int index
                required property var modelData
                readonly property bool isActive: panes.state.active === index
                readonly property int shown: isActive && panes.state.flipped ? panes.state.shownIn(index) : index
                readonly property var photo: panes.state.photos[shown] ?? modelData

                width: panes.columnWidth
                height: panes.height
                activeFocusOnTab: true
                onActiveFocusChanged: if (activeFocus) panes.state.active = index

                Rectangle {
                    anchors.fill: parent
                    color: Qt.rgba(Theme.text.r, Theme.text.g, Theme.text.b, 0.06)
                }
                OriginalView {
                    anchors.fill: parent
                    url: pane.photo.url
                    name: Theme.line(pane.photo.name)
                    zoom: panes.state.zoom
                    center: panes.state.center
                    actualPixels: panes.state.actualPixels
                    onPanned: center => panes.state.center = center
                    onZoomWanted: (zoom, at) => {
                        const within = Math.max(1, Math.min(panes.state.mostZoom, zoom));
                        const center = centerFor(within, at);
                        panes.state.zoom = within;
                        panes.state.center = center;
                    }
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
                        pane.forceActiveFocus();
                    }
                }
            }
        }
    }
}
