import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// The photos of a section. Cards are recycled; the columns share the width. None are made ahead of the scroll: a row
/// costs less than a frame, while a jump would pay for rows that nobody sees.
GridView {
    id: grid
    required property LibraryWindow window
    property real tileSize: 210
    readonly property int columns: Math.max(1, Math.floor((width - 2 * Theme.l + Theme.l) / (tileSize + Theme.l)))

    model: window.photos
    leftMargin: Theme.l
    topMargin: Theme.l
    bottomMargin: Theme.l
    cellWidth: Math.floor((width - Theme.l) / columns)
    cellHeight: Math.round((cellWidth - Theme.l) * 0.72) + 22 + Theme.l
    clip: true
    reuseItems: true
    cacheBuffer: 0
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    pixelAligned: true
    activeFocusOnTab: true
    onColumnsChanged: window.cursor.setColumns(columns)
    Component.onCompleted: window.cursor.setColumns(columns)
    Accessible.role: Accessible.List
    Accessible.name: window.title

    Keys.onPressed: event => keys.press(event)
    PhotoKeys {
        id: keys
        cursor: grid.window.cursor
        pageRows: Math.max(1, Math.floor(grid.height / grid.cellHeight))
        onMenuWanted: {
            const cell = grid.itemAtIndex(grid.window.cursor.position);
            if (cell) menu.show(cell, Theme.xl, Theme.xl, cell.url);
        }
    }
    Connections {
        target: grid.window.cursor
        function onPositionChanged() {
            if (grid.window.cursor.position >= 0)
                grid.positionViewAtIndex(grid.window.cursor.position, GridView.Contain);
        }
    }

    delegate: Item {
        id: cell
        required property int index
        required property string url
        required property string name
        required property bool readable
        required property string decision
        width: grid.cellWidth
        height: grid.cellHeight
        PhotoCard {
            width: parent.width - Theme.l
            height: parent.height - Theme.l
            pictureHeight: height - 22
            window: grid.window
            position: cell.index
            url: cell.url
            name: cell.name
            readable: cell.readable
            decision: cell.decision
            keyboardHere: grid.activeFocus
            onMenuWanted: (x, y) => menu.show(this, x, y, cell.url)
        }
    }

    TapHandler { onTapped: grid.forceActiveFocus() }
    PhotoMenu {
        id: menu
        window: grid.window
    }
    ScrollHandle {
        parent: grid
        anchors.right: parent.right
        height: parent.height
        size: grid.visibleArea.heightRatio
        position: grid.visibleArea.yPosition
        onPositionChanged: if (pressed) grid.contentY = position * grid.contentHeight + grid.originY
    }
}
