import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Review
import Lumisort.Ui

/// The footer: status line, progress, undo, thumbnail size and counts.
Item {
    id: footer
    required property LibraryWindow window
    property real tileSize: 210
    /// Gets the keyboard from parts that are hidden.
    property Item successor: null
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
            LazyLoader {
                wanted: footer.window.task.busy
                sourceComponent: Spinner { running: footer.window.task.busy }
            }
            Icon {
                visible: !footer.window.task.busy
                name: "security-high"
                color: Theme.secondary
            }
        }
        StyledText {
            text: Theme.line(footer.window.status.text)
            font.pixelSize: 12
            color: Theme.secondary
            Accessible.name: "Status: " + text
            Layout.fillWidth: true
        }
        Repeater {
            // Shown once something was marked.
            model: footer.window.marks.canUndo || footer.window.marks.canRedo
                   ? [footer.window.actions.of(ActionSet.Undo), footer.window.actions.of(ActionSet.Redo)] : []
            IconButton {
                required property var modelData
                command: modelData
                flat: true
                implicitHeight: 24
            }
        }
        LazyLoader {
            wanted: footer.window.matches.running
            sourceComponent: ProgressLine {
                label: "Scan progress"
                value: footer.window.matches.progress
            }
            Layout.preferredWidth: 120
        }
        LazyLoader {
            wanted: footer.window.matches.running || footer.window.folderImport.running
            sourceComponent: PushButton {
                command: footer.window.actions.of(ActionSet.Stop)
                implicitHeight: 24
            }
            successor: footer.successor
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
            text: footer.window.library.availableCount.toLocaleString(Qt.locale("en"), "f", 0) + " available / "
                  + footer.window.library.recordedCount.toLocaleString(Qt.locale("en"), "f", 0) + " recorded"
            color: Theme.secondary
        }
    }
}
