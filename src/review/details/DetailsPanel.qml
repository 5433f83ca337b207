import QtQuick
import QtQuick.Layouts
import Lumisort.Details
import Lumisort.Marks
import Lumisort.Ui

/// The facts about the photo in focus.
Rectangle {
    id: panel
    required property DetailsState details
    color: Theme.window

    Body {
        anchors.centerIn: parent
        visible: !panel.details.hasPhoto
        text: "Select a photo"
        color: Theme.secondary
    }

    Flickable {
        id: area
        anchors.fill: parent
        visible: panel.details.hasPhoto
        contentHeight: column.implicitHeight + 2 * Theme.l
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        ColumnLayout {
            id: column
            x: Theme.l
            y: Theme.l
            width: area.width - 2 * Theme.l
            spacing: Theme.m

            Preview {
                source: panel.details.hasPhoto ? Thumbnails.source(panel.details.url, panel.details.thumbnailRevision) : ""
                Layout.fillWidth: true
            }
            RowLayout {
                spacing: Theme.s
                Headline {
                    text: Theme.line(panel.details.name)
                    elide: Text.ElideMiddle
                    Layout.fillWidth: true
                }
                IconButton {
                    iconName: "edit-rename"
                    label: "Rename"
                    flat: true
                    onClicked: panel.details.beginRename()
                }
            }
            DecisionLabel {
                visible: decided
                decision: panel.details.decision
            }
            GridLayout {
                columns: 2
                columnSpacing: Theme.m
                rowSpacing: Theme.s
                Repeater {
                    model: [
                        "Dimensions", panel.details.dimensions,
                        "Size", panel.details.size,
                        "Format", panel.details.format,
                        "Date Taken", panel.details.date
                    ]
                    Body {
                        required property string modelData
                        required property int index
                        readonly property bool title: index % 2 === 0
                        text: modelData
                        color: title ? Theme.secondary : Theme.text
                        horizontalAlignment: title ? Text.AlignLeft : Text.AlignRight
                        Layout.fillWidth: !title
                    }
                }
            }
            Rectangle {
                color: Theme.hairline
                Layout.fillWidth: true
                Layout.preferredHeight: 1
            }
            ColumnLayout {
                spacing: Theme.xs
                Caption { text: "Location" }
                SelectableText {
                    label: "Location"
                    text: panel.details.location
                    Layout.fillWidth: true
                }
            }
            PushButton {
                text: "Show in File Manager"
                iconName: "document-open-folder"
                onClicked: FileBrowser.reveal(panel.details.url)
            }
        }
    }
    ScrollHandle {
        anchors.right: parent.right
        height: parent.height
        size: area.visibleArea.heightRatio
        position: area.visibleArea.yPosition
        onPositionChanged: if (pressed) area.contentY = position * area.contentHeight
    }
}
