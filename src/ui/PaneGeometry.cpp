#include "ui/PaneGeometry.h"

#include <algorithm>
#include <cmath>

namespace lumisort::ui {
namespace {

/// Neighbouring tiles share this many pixels, so that a filter finds on both sides of a seam what belongs
/// there.
constexpr int tileBorder = 2;
constexpr int tileStep = tileSide - 2 * tileBorder;
/// Tiles overlap by this part of a pixel, so that rounding leaves no gap between them.
constexpr double seam = 1.0 / 64;

/// One side of a tile: pixels of the level and what is drawn of them.
struct Span {
    int from, to;                ///< the texture
    double sourceFrom, sourceTo; ///< what is drawn, both in the level's pixels
};

/// `visibleFrom` … `visibleTo` and `end` in the level's pixels; `end` is where the picture ends, which may
/// lie inside the last one.
Span spanOf(int cell, int size, double end, double visibleFrom, double visibleTo) {
    const int from = cell * tileStep, to = std::min(size, from + tileStep);
    Span span{std::max(0, from - tileBorder), std::min(size, to + tileBorder), 0, 0};
    // Whole pixels, and one more than is seen, so that filters do not reach beyond.
    const double first = std::floor(visibleFrom) - 1, last = std::ceil(visibleTo) + 1;
    span.sourceFrom = std::max(first, from == 0 ? 0 : from - seam);
    span.sourceTo = std::min(last, to == size ? end : to + seam);
    return span;
}

double overflowed(double picture, double pane) {
    return std::max(picture - pane, 0.0);
}

double draggedBy(double center, double start, double translation, double overflow) {
    return overflow > 0 ? std::clamp(start - translation / overflow, 0.0, 1.0) : center;
}

/// Where the picture begins, along one side.
double originOf(double pane, double picture, double center) {
    return pane / 2 + (0.5 - center) * overflowed(picture, pane) - picture / 2;
}

/// The centre for which a picture of that length begins at `origin`.
double centerOf(double pane, double picture, double origin) {
    const double overflow = overflowed(picture, pane);
    return overflow > 0 ? std::clamp(-origin / overflow, 0.0, 1.0) : 0.5;
}

} // namespace

double scaleOf(const PaneView& view) {
    const double fit =
        std::min(view.pane.width() / view.picture.width(), view.pane.height() / view.picture.height());
    return view.zoom * (view.actualPixels ? 1 / std::max(view.pixelRatio, 1.0) : fit);
}

QRectF placeOf(const PaneView& view) {
    const QSizeF shown = QSizeF(view.picture) * scaleOf(view);
    QPointF origin(originOf(view.pane.width(), shown.width(), view.center.x()),
                   originOf(view.pane.height(), shown.height(), view.center.y()));
    if (view.actualPixels) {
        const QPointF onDisplay = (view.position + origin) * view.pixelRatio;
        origin =
            QPointF(std::round(onDisplay.x()), std::round(onDisplay.y())) / view.pixelRatio - view.position;
    }
    return {origin, shown};
}

QSizeF overflowOf(const PaneView& view) {
    return QSizeF(view.picture) * scaleOf(view) - view.pane;
}

QPointF draggedCenter(const PaneView& view, QPointF start, QPointF translation) {
    const QSizeF overflow = overflowOf(view);
    return {draggedBy(view.center.x(), start.x(), translation.x(), overflow.width()),
            draggedBy(view.center.y(), start.y(), translation.y(), overflow.height())};
}

QPointF zoomedCenter(const PaneView& view, double zoom, QPointF anchor) {
    PaneView zoomed = view;
    zoomed.zoom = zoom;
    const QRectF before = placeOf(view);
    const QSizeF after = QSizeF(view.picture) * scaleOf(zoomed);
    const double growth = zoom / view.zoom;
    const QPointF origin = anchor - (anchor - before.topLeft()) * growth;
    return {centerOf(view.pane.width(), after.width(), origin.x()),
            centerOf(view.pane.height(), after.height(), origin.y())};
}

double wheelFactor(double pixels, double angle) {
    constexpr double perPixel = 0.005, perNotch = 0.12, notch = 120;
    return std::exp(pixels != 0 ? perPixel * pixels : perNotch * angle / notch);
}

std::vector<PaneTile> visibleTiles(const PaneView& view, int level, QSize levelSize) {
    const QRectF place = placeOf(view);
    const QRectF seen = place & QRectF(QPointF(), view.pane);
    if (seen.isEmpty()) return {};
    const double reduction = std::ldexp(1.0, level), scale = scaleOf(view) * reduction;
    const QRectF visible((seen.topLeft() - place.topLeft()) / scale, seen.size() / scale);
    const QSizeF end = QSizeF(view.picture) / reduction;
    const auto cellAt = [](double pixel, int size) {
        return std::clamp(static_cast<int>(pixel) / tileStep, 0, (size - 1) / tileStep);
    };
    std::vector<PaneTile> tiles;
    for (int row = cellAt(visible.top(), levelSize.height());
         row <= cellAt(visible.bottom(), levelSize.height()); ++row)
        for (int column = cellAt(visible.left(), levelSize.width());
             column <= cellAt(visible.right(), levelSize.width()); ++column) {
            const Span x = spanOf(column, levelSize.width(), end.width(), visible.left(), visible.right());
            const Span y = spanOf(row, levelSize.height(), end.height(), visible.top(), visible.bottom());
            const QRectF drawn(QPointF(x.sourceFrom, y.sourceFrom), QPointF(x.sourceTo, y.sourceTo));
            if (drawn.isEmpty()) continue;
            tiles.push_back(
                {.cell = {column, row},
                 .picture = QRect(x.from, y.from, x.to - x.from, y.to - y.from),
                 .source = drawn.translated(-x.from, -y.from),
                 .target = QRectF(place.topLeft() + drawn.topLeft() * scale, drawn.size() * scale)});
        }
    return tiles;
}

} // namespace lumisort::ui
