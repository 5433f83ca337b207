import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// The photos of a section. There are only as many cards as fit on the screen; the photos scroll through them.
Flickable {
    id: grid
    required property LibraryWindow window
    property real tileSize: 210
    readonly property GridMetrics metrics: GridMetrics {
        width: grid.width
        tileSize: grid.tileSize
    }
    /// A photo of the row at the top, which stays there when the layout changes.
    property int topPhoto: 0
    readonly property size layout: Qt.size(metrics.columns, metrics.cellHeight)
    /// The layout that `contentY` was meant for.
    property size scrolledLayout

    contentWidth: width
    contentHeight: heightOf(shown.total)
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    pixelAligned: true
    activeFocusOnTab: true
    flickableDirection: Flickable.VerticalFlick
    onLayoutChanged: {
        window.cursor.setColumns(metrics.columns);
        showTop();
    }
    onContentHeightChanged: scrollTo(contentY)
    onContentYChanged: if (scrolledLayout === layout) topPhoto = Math.max(0, Math.floor((contentY - Theme.l) / metrics.cellHeight)) * metrics.columns
    Component.onCompleted: window.cursor.setColumns(metrics.columns)
    Accessible.role: Accessible.List
    Accessible.name: window.title

    function heightOf(photos: int): int {
        return Theme.l + Math.ceil(photos / metrics.columns) * metrics.cellHeight;
    }
    function yOf(position: int): int {
        return Theme.l + Math.floor(position / metrics.columns) * metrics.cellHeight;
    }
    function scrollTo(y: real) {
        contentY = Math.max(0, Math.min(y, heightOf(shown.total) - height));
    }
    function showTop() {
        scrollTo(topPhoto > 0 ? yOf(topPhoto) : contentY);
        scrolledLayout = layout;
    }
    /// Scrolls as little as shows a whole row and the margin around it.
    function reveal(position: int) {
        const y = yOf(position);
        if (y - Theme.l < contentY) scrollTo(y - Theme.l);
        else if (y + metrics.cellHeight > contentY + height) scrollTo(y + metrics.cellHeight - height);
    }

    Keys.onPressed: event => keys.press(event)
    PhotoKeys {
        id: keys
        cursor: grid.window.cursor
        pageRows: Math.max(1, Math.floor(grid.height / grid.metrics.cellHeight))
        onMenuWanted: {
            const card = cards.itemAt(shown.rowOf(grid.window.cursor.position));
            if (card) menu.show(card, Theme.xl, Theme.xl, card.url);
        }
    }
    Connections {
        target: grid.window.cursor
        function onPositionChanged() {
            if (grid.window.cursor.position >= 0) grid.reveal(grid.window.cursor.position);
        }
    }

    VisibleWindowModel {
        id: shown
        source: grid.window.photos
        first: Math.floor(grid.topPhoto / grid.metrics.columns) * grid.metrics.columns
        limit: grid.metrics.columns * (Math.ceil(grid.height / grid.metrics.cellHeight) + 1)
    }
    Repeater {
        id: cards
        model: shown
        PhotoCard {
            required position
            required url
            required name
            required readable
            required decision
            selected: grid.window.selectionRevision >= 0 && grid.window.isSelected(url)
            x: Theme.l + position % grid.metrics.columns * grid.metrics.cellWidth
            y: grid.yOf(position)
            width: grid.metrics.cardWidth
            height: grid.metrics.cardHeight
            pictureHeight: grid.metrics.pictureHeight
            window: grid.window
            keyboardHere: grid.activeFocus
            onMenuWanted: (x, y) => menu.show(this, x, y, url)
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
        onPositionChanged: if (pressed) grid.scrollTo(position * grid.contentHeight)
    }
}
