import QtQuick
import QtQuick.Layouts
import Lumisort.FilmEditor
import Lumisort.Ui

/// A group of sliders under a title, with a dot that resets the group where something in it was changed.
ColumnLayout {
    id: group
    required property FilmEditorModel editor
    property alias section: sliders.section
    property string title

    spacing: Theme.xs

    AdjustmentList {
        id: sliders
        editor: group.editor
    }
    Rectangle {
        implicitHeight: 1
        color: Theme.hairline
        Layout.fillWidth: true
    }
    RowLayout {
        spacing: Theme.xs
        Layout.preferredHeight: 24 // with or without the dot
        Caption {
            text: group.title
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }
        PushButton {
            id: dot
            visible: !sliders.isDefault
            flat: true
            implicitWidth: 24
            implicitHeight: 24
            help: "Reset " + group.title
            Accessible.name: help
            enabled: group.editor.editable
            onClicked: sliders.resetSection()
            contentItem: Item {
                Rectangle {
                    anchors.centerIn: parent
                    width: 7
                    height: 7
                    radius: 4
                    color: Theme.accentLine
                }
            }
        }
    }
    Repeater {
        model: sliders
        AdjustmentSlider {
            list: sliders
            enabled: group.editor.editable
            onReleased: group.editor.seal()
            Layout.fillWidth: true
        }
    }
}
