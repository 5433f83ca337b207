import QtQuick
import Lumisort.Review
import Lumisort.Ui

/// The photos of a section, as many as there may be: a screen of cards that stay, through which the photos scroll.
/// The columns share the width.
Flickable {
    id: grid
    required property LibraryWindow window
    property real tileSize: 210
    readonly property int columns: Math.max(1, Math.floor((width - 2 * Theme.l + Theme.l) / (tileSize + Theme.l)))
    readonly property int cellWidth: Math.floor((width - Theme.l) / columns)
    readonly property int cellHeight: Math.round((cellWidth - Theme.l) * 0.72) + 22 + Theme.l
    /// A photo of the row at the top, which stays there when the layout changes.
    property int topPhoto: 0
    readonly property string layout: columns + " × " + cellHeight
    /// The layout that `contentY` was meant for.
    property string scrolledLayout

    contentWidth: width
    contentHeight: heightOf(places.total)
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    pixelAligned: true
    activeFocusOnTab: true
    flickableDirection: Flickable.VerticalFlick
    onColumnsChanged: window.cursor.setColumns(columns)
    onLayoutChanged: showTop()
    onContentHeightChanged: scrollTo(contentY)
    onContentYChanged: if (scrolledLayout === layout) topPhoto = Math.max(0, Math.floor((contentY - Theme.l) / cellHeight)) * columns
    Component.onCompleted: window.cursor.setColumns(columns)
    Accessible.role: Accessible.List
    Accessible.name: window.title

    function heightOf(photos: int): int {
        return Theme.l + Math.ceil(photos / columns) * cellHeight;
    }
    function yOf(position: int): int {
        return Theme.l + Math.floor(position / columns) * cellHeight;
    }
    function scrollTo(y: real) {
        contentY = Math.max(0, Math.min(y, heightOf(places.total) - height));
    }
    function showTop() {
        scrollTo(topPhoto > 0 ? yOf(topPhoto) : contentY);
        scrolledLayout = layout;
    }
    /// Scrolls as little as shows a whole row and the margin around it.
    function reveal(position: int) {
        const y = yOf(position);
        if (y - Theme.l < contentY) scrollTo(y - Theme.l);
        else if (y + cellHeight > contentY + height) scrollTo(y + cellHeight - height);
    }

    Keys.onPressed: event => keys.press(event)
    PhotoKeys {
        id: keys
        cursor: grid.window.cursor
        pageRows: Math.max(1, Math.floor(grid.height / grid.cellHeight))
        onMenuWanted: {
            const card = cards.itemAt(places.placeOf(grid.window.cursor.position));
            if (card) menu.show(card, Theme.xl, Theme.xl, card.url);
        }
    }
    Connections {
        target: grid.window.cursor
        function onPositionChanged() {
            if (grid.window.cursor.position >= 0) grid.reveal(grid.window.cursor.position);
        }
    }

    PhotoSlots {
        id: places
        source: grid.window.photos
        first: Math.floor(grid.topPhoto / grid.columns) * grid.columns
        limit: grid.columns * (Math.ceil(grid.height / grid.cellHeight) + 1)
    }
    Repeater {
        id: cards
        model: places
        PhotoCard {
            required position
            required url
            required name
            required readable
            required decision
            x: Theme.l + position % grid.columns * grid.cellWidth
            y: grid.yOf(position)
            width: grid.cellWidth - Theme.l
            height: grid.cellHeight - Theme.l
            pictureHeight: height - 22
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
