import QtQuick
import QtQuick.Layouts
import Lumisort.Review
import Lumisort.Ui

/// What the program does, how large the thumbnails are, how much is there.
Item {
    id: footer
    required property LibraryWindow window
    property real tileSize: 210
    readonly property QtObject model: window.model
    signal tileSizeWanted(real size)

    implicitHeight: 34

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.l
        anchors.rightMargin: Theme.l
        spacing: Theme.s
        Item {
            implicitWidth: 16
            implicitHeight: 16
            OnDemand {
                wanted: footer.model.busy
                sourceComponent: Spinner { running: footer.model.busy }
            }
            Icon {
                visible: !footer.model.busy
                name: "security-high"
                color: Theme.secondary
            }
        }
        StyledText {
            text: Theme.line(footer.model.status)
            font.pixelSize: 12
            color: Theme.secondary
            Accessible.name: "Status: " + text
            Layout.fillWidth: true
        }
        Repeater {
            // There once something was marked.
            model: footer.window.marks.canUndo || footer.window.marks.canRedo
                   ? [footer.window.commands.undo, footer.window.commands.redo] : []
            IconButton {
                required property var modelData
                command: modelData
                flat: true
                implicitHeight: 24
            }
        }
        OnDemand {
            wanted: footer.model.similarityRunning
            sourceComponent: ProgressLine {
                label: "Scan progress"
                value: footer.model.similarityProgress
            }
            Layout.preferredWidth: 120
        }
        OnDemand {
            wanted: footer.model.similarityRunning || footer.model.importRunning
            sourceComponent: PushButton {
                command: footer.window.commands.stop
                implicitHeight: 24
            }
        }
        Icon {
            name: "view-grid"
            color: Theme.secondary
            Layout.leftMargin: Theme.m
        }
        ValueSlider {
            label: "Thumbnail size"
            from: 85
            to: 420
            value: footer.tileSize
            onMoved: footer.tileSizeWanted(value)
            Layout.rightMargin: Theme.m
        }
        StyledText {
            font.pixelSize: 12
            text: footer.model.availableCount.toLocaleString(Qt.locale("en"), "f", 0) + " available / "
                  + footer.window.recordedCount.toLocaleString(Qt.locale("en"), "f", 0) + " recorded"
            color: Theme.secondary
        }
    }
}
