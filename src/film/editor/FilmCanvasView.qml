import QtQuick
import Lumisort.FilmEditor
import Lumisort.Ui

/// The picture of an editor with what lies over it. The surround is dark in both themes: a bright one would
/// change how the photo looks.
FocusScope {
    id: view
    required property FilmEditorModel editor
    /// The toggle is on or its key is held.
    readonly property bool showsOriginal: editor.showsOriginal || holding
    property bool holding: false
    readonly property bool hasPreview: editor.hasPreview

    function fit() {
        canvas.actualPixels = false;
        canvas.zoom = 1;
    }
    function showActualPixels(at) {
        const anchor = at ?? Qt.point(canvas.width / 2, canvas.height / 2);
        const center = canvas.zoomed(Math.max(1, canvas.scale100), anchor);
        canvas.zoom = 1;
        canvas.actualPixels = true;
        canvas.center = center;
    }
    function zoomBy(factor, at) {
        if (!canvas.actualPixels && canvas.zoom * factor >= canvas.scale100) {
            showActualPixels(at);
            return;
        }
        if (canvas.actualPixels && canvas.zoom * factor < 1) {
            const fitted = Math.max(1, canvas.scale100 * canvas.zoom * factor);
            canvas.actualPixels = false;
            canvas.zoom = fitted;
            return;
        }
        const zoom = Math.max(1, Math.min(8, canvas.zoom * factor));
        const center = canvas.zoomed(zoom, at ?? Qt.point(canvas.width / 2, canvas.height / 2));
        canvas.zoom = zoom;
        canvas.center = center;
    }
    function pan(x, y) {
        canvas.center = canvas.dragged(canvas.center, Qt.point(x, y));
    }

    Keys.onPressed: event => {
        if (event.key === Qt.Key_Backslash) {
            if (!event.isAutoRepeat)
                view.holding = true;
        } else if (event.key === Qt.Key_0) {
            view.fit();
        } else if (event.key === Qt.Key_1) {
            view.showActualPixels();
        } else if (event.key === Qt.Key_Plus || event.key === Qt.Key_Equal) {
            view.zoomBy(1.25);
        } else if (event.key === Qt.Key_Minus) {
            view.zoomBy(0.8);
        } else if (event.key === Qt.Key_Left) {
            view.pan(canvas.width / 8, 0);
        } else if (event.key === Qt.Key_Right) {
            view.pan(-canvas.width / 8, 0);
        } else if (event.key === Qt.Key_Up) {
            view.pan(0, canvas.height / 8);
        } else if (event.key === Qt.Key_Down) {
            view.pan(0, -canvas.height / 8);
        } else {
            return;
        }
        event.accepted = true;
    }
    Keys.onReleased: event => {
        if (event.key === Qt.Key_Backslash && !event.isAutoRepeat)
            view.holding = false;
    }
    onActiveFocusChanged: if (!activeFocus) holding = false

    Rectangle {
        anchors.fill: parent
        color: "#171717"
    }
    FilmCanvas {
        id: canvas
        anchors.fill: parent
        anchors.margins: actualPixels || zoom > 1 ? 0 : Theme.xl
        anchors.topMargin: actualPixels || zoom > 1 ? 0 : 60
        anchors.bottomMargin: actualPixels || zoom > 1 ? 0 : 44
        editor: view.editor
        original: view.showsOriginal
        divider: split.checked && !view.showsOriginal ? divider.share : -1
        property bool focusByKey: false
        activeFocusOnTab: true
        focus: true
        onFocusReasonSeen: reason => focusByKey = reason === Qt.TabFocusReason || reason === Qt.BacktabFocusReason
        onWheelTurned: (factor, position) => view.zoomBy(factor, position)
        Accessible.role: Accessible.Graphic
        Accessible.name: view.showsOriginal ? "Original photo" : "Film preview"
        Accessible.ignored: !view.hasPreview

        Rectangle {
            anchors.fill: parent
            visible: canvas.activeFocus && canvas.focusByKey
            color: "transparent"
            border.width: 2
            border.color: Theme.accentLine
        }
        DragHandler {
            property point start
            target: null
            acceptedButtons: Qt.LeftButton
            cursorShape: active ? Qt.ClosedHandCursor : Qt.ArrowCursor
            onActiveChanged: if (active) start = canvas.center
            onActiveTranslationChanged: if (active) canvas.center = canvas.dragged(start, Qt.point(activeTranslation.x, activeTranslation.y))
        }
        TapHandler {
            onTapped: canvas.forceActiveFocus()
            onDoubleTapped: point => canvas.actualPixels || canvas.zoom > 1 ? view.fit() : view.showActualPixels(point.position)
        }
        PinchHandler {
            property real last: 1
            target: null
            onActiveChanged: last = 1
            onActiveScaleChanged: if (active) {
                view.zoomBy(activeScale / last, centroid.position);
                last = activeScale;
            }
        }
        DividerHandle {
            id: divider
            visible: canvas.divider >= 0 && view.hasPreview
            canvas: canvas
        }
    }

    CanvasButton {
        id: toggle
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.margins: Theme.l
        iconName: "edit-duplicate"
        text: "Original"
        help: "Compare with the original photo"
        hint: "\\"
        checkable: true
        checked: view.editor.showsOriginal
        enabled: view.hasPreview
        onToggled: view.editor.showsOriginal = checked
    }
    CanvasButton {
        id: split
        anchors.left: toggle.right
        anchors.top: parent.top
        anchors.topMargin: Theme.l
        anchors.leftMargin: Theme.s
        iconName: "view-split-left-right"
        text: "Divider"
        help: "Show the original to the left of a divider"
        checkable: true
        enabled: view.hasPreview
    }
    Row {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.l
        spacing: Theme.xs
        CanvasButton {
            text: "Fit"
            help: "Show the whole photo"
            hint: "0"
            checked: !canvas.actualPixels && canvas.zoom === 1
            enabled: view.hasPreview
            onClicked: view.fit()
        }
        CanvasButton {
            text: "100%"
            help: "Show the export's own pixels"
            hint: "1"
            checked: canvas.actualPixels && canvas.zoom === 1
            enabled: view.hasPreview
            onClicked: view.showActualPixels()
        }
    }
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.m
        width: caption.width + 2 * Theme.m
        height: 24
        radius: 12
        visible: view.hasPreview
        color: canvas.actualPixels || canvas.zoom > 1 ? Theme.photoBackdrop : "transparent"
        Caption {
            id: caption
            anchors.centerIn: parent
            width: Math.min(implicitWidth, view.width - 4 * Theme.l)
            color: "#b0b0b0"
            text: view.editor.isRAW ? "Developed from RAW sensor data"
                                    : "Rendered input; the original scene spectrum is not available"
        }
    }
    Spinner {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.l
        running: view.hasPreview && view.editor.isRendering
        visible: running
        color: "#b0b0b0"
        Accessible.name: "Updating preview"
    }
    Column {
        anchors.centerIn: parent
        visible: !view.hasPreview
        spacing: Theme.m
        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            running: parent.visible && view.editor.isRendering
            visible: view.editor.isRendering
            implicitWidth: 22
            implicitHeight: 22
            color: "#b0b0b0"
            Accessible.name: "Rendering preview"
        }
        Caption {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: view.editor.isRendering
            text: "Rendering preview"
            color: "#b0b0b0"
        }
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: !view.editor.isRendering
            name: "photo"
            size: 48
            color: "#7a7a7a"
        }
        PushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: !view.editor.isRendering
            text: view.editor.sourceChanged ? "Reload Photo" : "Retry"
            onClicked: view.editor.reload()
        }
    }
}
