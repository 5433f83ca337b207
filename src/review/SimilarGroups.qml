import QtQuick
import Lumisort.Marks
import Lumisort.Review
import Lumisort.Ui

/// The groups of matching photos, each below its heading.
ListView {
    id: list
    required property LibraryWindow window
    property real tileSize: 210
    readonly property SimilarRows rows: window.groups
    readonly property GridMetrics metrics: GridMetrics {
        width: list.width
        tileSize: list.tileSize
    }
    readonly property int headingHeight: 36

    model: rows
    leftMargin: Theme.l
    topMargin: Theme.xs
    bottomMargin: Theme.l
    clip: true
    reuseItems: true
    cacheBuffer: metrics.cellHeight
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    pixelAligned: true
    activeFocusOnTab: true
    Component.onCompleted: rows.setColumns(metrics.columns)
    Accessible.role: Accessible.List
    Accessible.name: "Similar Photos"

    Keys.onPressed: event => keys.press(event)
    PhotoKeys {
        id: keys
        cursor: list.window.cursor
        pageRows: Math.max(1, Math.floor(list.height / list.metrics.cellHeight))
        onMenuWanted: {
            const position = list.window.cursor.position;
            const line = list.itemAtIndex(list.rows.rowOf(position));
            if (line) menu.show(line, (position - line.first) * list.metrics.cellWidth + Theme.xl, Theme.xl,
                                line.photos[position - line.first].url);
        }
    }
    Connections {
        target: list.metrics
        function onColumnsChanged() {
            // The photos at the top stay there.
            const top = list.rows.firstOf(list.indexAt(0, list.contentY + list.metrics.cellHeight / 2));
            list.rows.setColumns(list.metrics.columns);
            if (top > 0) list.positionViewAtIndex(list.rows.rowOf(top), ListView.Beginning);
        }
    }
    Connections {
        target: list.window.cursor
        function onPositionChanged() {
            const row = list.rows.rowOf(list.window.cursor.position);
            if (row < 0) return;
            list.positionViewAtIndex(row, ListView.Contain);
            // Where the view jumped, the heights of the rows around were guessed.
            list.forceLayout();
            list.positionViewAtIndex(row, ListView.Contain);
        }
    }

    delegate: Item {
        id: line
        required property bool heading
        required property int number
        required property int count
        required property int first
        required property var photos
        width: list.width - list.metrics.gap
        height: heading ? list.headingHeight : list.metrics.cellHeight

        Row {
            visible: line.heading
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.s
            spacing: Theme.s
            Headline {
                id: title
                text: "Group " + line.number
                Accessible.role: Accessible.Heading
            }
            Body {
                anchors.baseline: title.baseline
                text: line.count + " photos"
                color: Theme.secondary
            }
        }
        Item {
            Repeater {
                model: line.photos.length
                PhotoCard {
                    required property int index
                    // A row that gets fewer photos keeps its cells until the view has followed.
                    readonly property var photo: line.photos[index] ?? {}
                    x: index * list.metrics.cellWidth
                    width: list.metrics.cardWidth
                    height: list.metrics.cardHeight
                    pictureHeight: list.metrics.pictureHeight
                    window: list.window
                    position: line.first + index
                    url: photo.url ?? ""
                    name: photo.name ?? ""
                    note: photo.note ?? ""
                    readable: photo.readable ?? false
                    selected: photo.selected ?? false
                    decision: photo.decision ?? Decision.None
                    keyboardHere: list.activeFocus
                    onMenuWanted: (x, y) => menu.show(this, x, y, url)
                }
            }
        }
    }

    TapHandler { onTapped: list.forceActiveFocus() }
    PhotoMenu {
        id: menu
        window: list.window
    }
    ScrollHandle {
        parent: list
        anchors.right: parent.right
        height: parent.height
        size: list.visibleArea.heightRatio
        position: list.visibleArea.yPosition
        onPositionChanged: if (pressed) list.contentY = position * list.contentHeight + list.originY
    }
}
