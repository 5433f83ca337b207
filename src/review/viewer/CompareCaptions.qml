import QtQuick
import QtQuick.Layouts
import Lumisort.Ui
import Lumisort.Viewer

/// Under each compared photo: what it is, what was decided, and the buttons that decide.
Item {
    id: captions
    property CompareState state
    property real columnWidth
    property real spacing
    property real scrolled

    implicitHeight: row.implicitHeight
    clip: row.width > width

    Row {
        id: row
        x: -captions.scrolled
        spacing: captions.spacing
        Repeater {
            model: captions.state ? captions.state.photos : []
            Column {
                id: caption
                required property int index
                required property var modelData
                width: captions.columnWidth
                spacing: Theme.xs

                RowLayout {
                    width: parent.width
                    spacing: Theme.s
                    Body {
                        text: Theme.line(caption.modelData.name)
                        elide: Text.ElideMiddle
                        font.weight: captions.state.active === caption.index ? Font.DemiBold : Font.Normal
                        Layout.fillWidth: true
                    }
                    DecisionLabel {
                        decision: captions.state.decisions[caption.index] ?? "Unmarked"
                    }
                }
                Caption {
                    width: parent.width
                    text: caption.modelData.details
                    bottomPadding: Theme.xs
                }
                Flow {
                    width: parent.width
                    spacing: Theme.s
                    PushButton {
                        text: "Import"
                        iconName: "checkmark"
                        tint: Theme.keep
                        focusPolicy: Qt.TabFocus
                        onClicked: captions.state.mark(caption.index, "Import")
                    }
                    PushButton {
                        text: "Skip"
                        iconName: "flag"
                        tint: Theme.skip
                        focusPolicy: Qt.TabFocus
                        onClicked: captions.state.mark(caption.index, "Skip")
                    }
                    PushButton {
                        text: "Clear"
                        focusPolicy: Qt.TabFocus
                        onClicked: captions.state.mark(caption.index, "Unmarked")
                    }
                    IconButton {
                        iconName: "document-open"
                        label: "Open Original"
                        focusPolicy: Qt.TabFocus
                        onClicked: captions.state.openOriginal(caption.index)
                    }
                }
            }
        }
    }
}
