import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumisort.FilmEditor
import Lumisort.Ui

/// The photo on every stock and paper, to pick from.
Sheet {
    id: sheet
    required property FilmEditorModel editor

    title: "Compare Films"
    padding: Theme.l

    PairList {
        id: pairs
        editor: sheet.editor
        active: sheet.opened
    }
    contentItem: ColumnLayout {
        spacing: Theme.m
        Headline {
            text: sheet.title
            Layout.fillWidth: true
        }
        GridLayout {
            columns: 4
            columnSpacing: Theme.m
            rowSpacing: Theme.m
            Repeater {
                model: pairs
                T.Button {
                    id: tile
                    required property int index
                    required property string title
                    required property var picture
                    required property bool current
                    implicitWidth: 200
                    implicitHeight: 168
                    Accessible.name: title
                    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) click(); }
                    onClicked: {
                        pairs.pick(index);
                        sheet.close();
                    }
                    contentItem: Item {
                        PictureItem {
                            width: parent.width
                            height: parent.height - 24
                            picture: tile.picture
                        }
                        Spinner {
                            anchors.centerIn: parent
                            running: tile.picture.width === 0 || tile.picture === undefined
                            visible: running
                        }
                        Caption {
                            anchors.bottom: parent.bottom
                            width: parent.width
                            horizontalAlignment: Text.AlignHCenter
                            text: tile.title
                            font.weight: tile.current ? Font.DemiBold : Font.Normal
                            color: tile.current ? Theme.accentLine : Theme.text
                        }
                    }
                    background: Rectangle {
                        radius: Theme.controlRadius
                        color: tile.hovered ? Theme.hover : "transparent"
                        FocusRing { control: tile }
                    }
                }
            }
        }
        PushButton {
            text: "Cancel"
            Layout.alignment: Qt.AlignRight
            onClicked: sheet.close()
        }
    }
}
