import QtQuick
import Lumisort.FilmEditor
import Lumisort.Ui

/// The histogram of what the canvas shows, with a mark at each end where values are clipped.
Rectangle {
    id: view
    required property FilmEditorModel editor
    property alias original: item.original

    implicitHeight: 64
    radius: Theme.controlRadius
    color: "#171717"
    Accessible.role: Accessible.Graphic
    Accessible.name: "Histogram"
    Accessible.description: marks.description

    HistogramItem {
        id: item
        anchors.fill: parent
        anchors.margins: Theme.xs
        editor: view.editor
    }
    Item {
        id: marks
        anchors.fill: parent
        anchors.margins: 6
        readonly property string description: "Shadows clipped: " + percent(item.clippedShadows) + ", highlights clipped: "
                                              + percent(item.clippedHighlights)
        function percent(share) { return (share * 100).toFixed(1) + "%"; }
        Rectangle {
            width: 7
            height: 7
            rotation: 45
            color: "#8ab4f8"
            visible: item.clippedShadows > 0.001
        }
        Rectangle {
            anchors.right: parent.right
            width: 7
            height: 7
            rotation: 45
            color: "#ff8a80"
            visible: item.clippedHighlights > 0.001
        }
    }
    HoverHandler { id: pointer }
    Tip {
        text: marks.description
        shown: pointer.hovered && view.editor.hasPreview
    }
}
