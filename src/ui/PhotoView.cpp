#include "ui/PhotoView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumisort::ui {

void PhotoView::setZoom(double zoom) {
    if (!std::isfinite(zoom)) return;
    zoom_ = std::clamp(zoom, 1.0, maxZoom_);
    if (zoom_ == 1 && !actualPixels_) center_ = {0.5, 0.5};
    Q_EMIT changed();
}

void PhotoView::setCenter(QPointF center) {
    if (!std::isfinite(center.x()) || !std::isfinite(center.y())) return;
    center = {std::clamp(center.x(), 0.0, 1.0), std::clamp(center.y(), 0.0, 1.0)};
    if (std::exchange(center_, center) != center) Q_EMIT changed();
}

void PhotoView::setActualPixels(bool actualPixels) {
    actualPixels_ = actualPixels;
    zoom_ = 1;
    center_ = {0.5, 0.5};
    Q_EMIT changed();
}

void PhotoView::zoomAt(double zoom, const PaneView& pane, QPointF anchor) {
    if (!std::isfinite(zoom)) return;
    setCenter(zoomedCenter(pane, std::clamp(zoom, 1.0, maxZoom_), anchor));
    setZoom(zoom);
}

void PhotoView::zoomBySteps(int steps) {
    setZoom(zoom_ * std::pow(zoomPerStep, steps));
}

} // namespace lumisort::ui
