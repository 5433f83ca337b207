import QtQuick
import Lumisort.Ui

/// The sizes of a grid of photo cards that share its width.
QtObject {
    required property real width
    /// The width that a card has at least, as far as the grid is as wide.
    required property real tileSize
    readonly property int gap: Theme.l
    readonly property int captionHeight: 22
    readonly property int columns: Math.max(1, Math.floor((width - gap) / (tileSize + gap)))
    /// A cell is a card and the gap to its right and below it.
    readonly property int cellWidth: Math.floor((width - gap) / columns)
    readonly property int cardWidth: cellWidth - gap
    readonly property int pictureHeight: Math.round(cardWidth * 0.72)
    readonly property int cardHeight: pictureHeight + captionHeight
    readonly property int cellHeight: cardHeight + gap
}
