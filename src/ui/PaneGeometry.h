#pragma once

#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <vector>

/// Where a photo lies in its pane, and which parts of it have to be drawn. Panes are measured in logical
/// pixels of the window, pictures in their own. Pure functions.
namespace lumisort::ui {

struct PaneView {
    QSizeF pane;
    QSize picture;
    double zoom = 1;
    bool actualPixels =
        false; ///< one picture pixel for each pixel of the display at zoom 1; else all of it fits
    QPointF center{0.5, 0.5}; ///< 0 … 1 each way: what part of the overflow lies left of and above the pane
    double pixelRatio = 1;    ///< display pixels for each logical one
    QPointF position{};       ///< of the pane in its window
};

/// Logical pixels for each of the picture's.
double scaleOf(const PaneView& view);
/// The whole picture, in the pane's coordinates; it may reach beyond the pane. Actual pixels lie on the grid
/// of the display's.
QRectF placeOf(const PaneView& view);
/// By how much the picture is larger than the pane each way; negative where it is smaller.
QSizeF overflowOf(const PaneView& view);

/// The centre after a drag by `translation` that began at the centre `start`. A side that does not overflow
/// keeps the view's centre.
QPointF draggedCenter(const PaneView& view, QPointF start, QPointF translation);
/// The centre with which, at `zoom`, what lies under `anchor` stays there as far as the picture's edges
/// allow.
QPointF zoomedCenter(const PaneView& view, double zoom, QPointF anchor);
/// The factor of a turn of the wheel. `pixels` is the way of a device that measures it, 0 for all others;
/// `angle` is in eighths of a degree, 120 for a notch.
double wheelFactor(double pixels, double angle);

/// Part of a picture that is drawn as one texture.
struct PaneTile {
    QPoint cell;   ///< column and row; the tile's identity within its level
    QRect picture; ///< the texture: pixels of the level, with a border shared with the neighbours
    QRectF source; ///< what is drawn of it, in pixels of the texture
    QRectF target; ///< where, in the pane's coordinates
};

/// Longest side of a tile with its borders; every graphics system has textures of that size.
inline constexpr int tileSide = 1024;

/// The tiles of `level` (a level of the picture's pyramid, of size `levelSize`) that the pane shows.
std::vector<PaneTile> visibleTiles(const PaneView& view, int level, QSize levelSize);

} // namespace lumisort::ui
