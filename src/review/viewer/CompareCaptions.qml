import QtQuick
import QtQuick.Layouts
import Lumisort.Actions
import Lumisort.Marks
import Lumisort.Ui
import Lumisort.Viewer

/// The captions of the compared photos: name, facts, decision, and buttons that decide.
Item {
    id: captions
    property CompareState state
    property real columnWidth
    property real spacing
    property real scrolled

    implicitHeight: row.implicitHeight
    clip: row.width > width

    /// An action on this column's photo, which becomes the active one.
    component DecisionButton: PushButton {
        required property int column
        required property Command marking
        text: marking.text
        iconName: marking.iconName
        onClicked: {
            captions.state.active = column;
            marking.trigger();
        }
    }

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
                    DecisionLabel { decision: captions.state.decisions[caption.index] ?? Decision.None }
                }
                Caption {
                    width: parent.width
                    text: caption.modelData.details
                    bottomPadding: Theme.xs
                }
                Flow {
                    width: parent.width
                    spacing: Theme.s
                    DecisionButton {
                        column: caption.index
                        marking: captions.state.actions.of(ActionSet.Keep)
                        tint: Theme.keep
                    }
                    DecisionButton {
                        column: caption.index
                        marking: captions.state.actions.of(ActionSet.Skip)
                        tint: Theme.skip
                    }
                    DecisionButton {
                        column: caption.index
                        marking: captions.state.actions.of(ActionSet.ClearMark)
                        text: "Clear"
                    }
                    IconButton {
                        iconName: "document-open"
                        label: "Open Original"
                        onClicked: captions.state.openOriginal(caption.index)
                    }
                }
            }
        }
    }
}
