import QtQuick
import Lumisort.Ui
import Lumisort.Viewer

/// One original, or what it says while there is none. Dragging pans; the wheel and a pinch zoom about where they
/// happen.
Item {
    id: original
    property alias url: pane.url
    property alias view: pane.view
    property alias leads: pane.leads
    property string name
    property color text: Theme.text
    property color secondary: Theme.secondary
    property color warning: Theme.skip

    Accessible.role: Accessible.Graphic
    Accessible.name: "Original photo: " + name
    Accessible.description: pane.status === OriginalPane.Loading ? loading.text : pane.error

    OriginalPane {
        id: pane
        anchors.fill: parent
    }
    Column {
        anchors.centerIn: parent
        visible: pane.status === OriginalPane.Loading
        spacing: Theme.s
        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            running: parent.visible
            color: original.secondary
        }
        Caption {
            id: loading
            text: "Loading original…"
            color: original.secondary
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
            color: original.warning
        }
        Caption {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: pane.error
            color: original.text
        }
    }

    DragHandler {
        property point start
        target: null
        acceptedButtons: Qt.LeftButton
        cursorShape: active ? Qt.ClosedHandCursor : Qt.ArrowCursor
        onActiveChanged: if (active) start = original.view.center
        onActiveTranslationChanged: if (active) pane.drag(start, Qt.point(activeTranslation.x, activeTranslation.y))
    }
    PinchHandler {
        property real start: 1
        target: null
        onActiveChanged: if (active) start = original.view.zoom
        onActiveScaleChanged: if (active && Math.abs(activeScale - 1) >= 0.01) pane.zoomAt(start * activeScale, centroid.position)
    }
}
