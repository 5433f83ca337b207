import QtQuick
import Lumisort.Ui
import Lumisort.Viewer

/// One original with what it says while there is none. Dragging pans; the wheel and a pinch zoom about where
/// they happen. The view itself belongs to whoever holds `zoom` and `center`.
Item {
    id: view
    property alias url: pane.url
    property alias zoom: pane.zoom
    property alias center: pane.center
    property alias actualPixels: pane.actualPixels
    property string name
    property color text: Theme.text
    property color secondary: Theme.secondary
    property color warning: Theme.skip
    signal panned(point center)
    signal zoomWanted(real zoom, point at)

    /// The centre that keeps what lies at `at` in its place when zoomed.
    function centerFor(zoom, at) {
        return pane.zoomed(zoom, at);
    }

    Accessible.role: Accessible.Graphic
    Accessible.name: "Original photo: " + name
    Accessible.description: pane.status === OriginalPane.Loading ? loading.text : pane.error

    OriginalPane {
        id: pane
        anchors.fill: parent
        onWheelTurned: (factor, position) => view.zoomWanted(zoom * factor, position)
    }
    Column {
        anchors.centerIn: parent
        visible: pane.status === OriginalPane.Loading
        spacing: Theme.s
        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            running: parent.visible
            color: view.secondary
        }
        Caption {
            id: loading
            text: "Loading original…"
            color: view.secondary
        }
    }
    Column {
        anchors.centerIn: parent
        visible: pane.status === OriginalPane.Failed
        width: Math.min(parent.width - 2 * Theme.l, 400)
        spacing: Theme.s
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "data-warning"
            size: 22
            color: view.warning
        }
        Caption {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: pane.error
            color: view.text
        }
    }

    DragHandler {
        property point start
        target: null
        acceptedButtons: Qt.LeftButton
        cursorShape: active ? Qt.ClosedHandCursor : Qt.ArrowCursor
        onActiveChanged: if (active) start = view.center
        onActiveTranslationChanged: if (active) view.panned(pane.dragged(start, Qt.point(activeTranslation.x, activeTranslation.y)))
    }
    PinchHandler {
        property real start: 1
        target: null
        onActiveChanged: if (active) start = view.zoom
        onActiveScaleChanged: if (active && Math.abs(activeScale - 1) >= 0.01) view.zoomWanted(start * activeScale, centroid.position)
    }
}
