import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// Groups of matching photos, each under its heading.
ListView {
    id: list
    required property LibraryWindow window
    property real tileSize: 210
    readonly property SimilarRows rows: window.groups
    readonly property int columns: Math.max(1, Math.floor((width - 2 * Theme.l + Theme.l) / (tileSize + Theme.l)))
    readonly property int cellWidth: Math.floor((width - Theme.l) / columns)
    readonly property int pictureHeight: Math.round((cellWidth - Theme.l) * 0.72)
    readonly property int rowHeight: pictureHeight + 22 + Theme.l
    readonly property int headingHeight: 36

    model: rows
    leftMargin: Theme.l
    topMargin: Theme.xs
    bottomMargin: Theme.l
    clip: true
    reuseItems: true
    cacheBuffer: rowHeight
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    pixelAligned: true
    activeFocusOnTab: true
    onColumnsChanged: rows.setColumns(columns)
    Component.onCompleted: rows.setColumns(columns)
    Accessible.role: Accessible.List
    Accessible.name: "Similar Photos"

    Keys.onPressed: event => keys.press(event)
    PhotoKeys {
        id: keys
        cursor: list.window.cursor
        pageRows: Math.max(1, Math.floor(list.height / list.rowHeight))
        onMenuWanted: {
            const position = list.window.cursor.position;
            const line = list.itemAtIndex(list.rows.rowOf(position));
            if (line) menu.show(line, (position - line.first) * list.cellWidth + Theme.xl, Theme.xl, list.rows.card(position).url);
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
        required property int length
        width: list.width - Theme.l
        height: heading ? list.headingHeight : list.rowHeight

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
        Row {
            Repeater {
                model: line.length
                Item {
                    id: cell
                    required property int index
                    readonly property int position: line.first + index
                    readonly property var photo: list.rows.card(position)
                    width: list.cellWidth
                    height: list.rowHeight
                    PhotoCard {
                        width: parent.width - Theme.l
                        height: parent.height - Theme.l
                        pictureHeight: list.pictureHeight
                        window: list.window
                        position: cell.position
                        url: cell.photo.url ?? ""
                        name: cell.photo.name ?? ""
                        note: cell.photo.note ?? ""
                        readable: list.window.marksRevision >= 0 && list.window.isReadable(url)
                        decision: list.window.marksRevision >= 0 ? list.window.decision(url) : ""
                        keyboardHere: list.activeFocus
                        onMenuWanted: (x, y) => menu.show(this, x, y, url)
                    }
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
