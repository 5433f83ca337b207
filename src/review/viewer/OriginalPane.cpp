#include "review/viewer/OriginalPane.h"

#include "model/Utf8.h"
#include "review/viewer/TilesNode.h"

#include <QGuiApplication>
#include <QPointer>
#include <QQuickWindow>
#include <QWheelEvent>
#include <utility>

namespace lumisort::review {

using library::OriginalDecodeQueue;

OriginalPane::OriginalPane(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setClip(true);
}

OriginalPane::~OriginalPane() = default;

void OriginalPane::setUrl(const QString& url) {
    if (std::exchange(url_, url) == url) return;
    const int request = ++request_;
    original_.reset();
    error_.clear();
    auto next = OriginalDecodeQueue::Ticket();
    if (const auto file = files::FileUrl::fromString(url.toStdString())) {
        auto& queue = OriginalDecodeQueue::shared();
        original_ = queue.recall(*file);
        next = queue.request(*file, OriginalDecodeQueue::Priority::shown,
                             [post = runner_.mainThread(), pane = QPointer(this),
                              request](OriginalDecodeQueue::Answer answer) {
                                 post([pane, request, answer = std::move(answer)] {
                                     if (pane && pane->request_ == request) pane->show(answer);
                                 });
                             });
    }
    ticket_ = std::move(next);
    Q_EMIT urlChanged();
    Q_EMIT statusChanged();
    changeView();
}

void OriginalPane::show(OriginalDecodeQueue::Answer answer) {
    if (answer && *answer == original_) return; // It was recalled, and its file has not changed.
    original_ = answer ? *std::move(answer) : nullptr;
    error_ = answer ? QString() : model::fromUtf8(answer.error());
    Q_EMIT statusChanged();
    changeView();
}

OriginalPane::Status OriginalPane::status() const {
    if (original_) return Ready;
    if (!error_.isEmpty()) return Failed;
    return url_.isEmpty() ? Empty : Loading;
}

void OriginalPane::setZoom(double zoom) {
    if (std::exchange(zoom_, zoom) != zoom) changeView();
}

void OriginalPane::setCenter(QPointF center) {
    if (std::exchange(center_, center) != center) changeView();
}

void OriginalPane::setActualPixels(bool actualPixels) {
    if (std::exchange(actualPixels_, actualPixels) != actualPixels) changeView();
}

void OriginalPane::changeView() {
    Q_EMIT viewChanged();
    update();
}

ui::PaneView OriginalPane::view() const {
    return {.pane = size(),
            .picture = {original_->width(), original_->height()},
            .zoom = zoom_,
            .actualPixels = actualPixels_,
            .center = center_,
            .pixelRatio = window() ? window()->effectiveDevicePixelRatio() : 1,
            .position = mapToScene({})};
}

QPointF OriginalPane::dragged(QPointF start, QPointF translation) const {
    return original_ ? ui::draggedCenter(view(), start, translation) : center_;
}

QPointF OriginalPane::zoomed(double zoom, QPointF anchor) const {
    return original_ ? ui::zoomedCenter(view(), zoom, anchor) : center_;
}

QSGNode* OriginalPane::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* tiles = static_cast<TilesNode*>(old);
    if (!original_ || size().isEmpty()) {
        delete tiles;
        return nullptr;
    }
    if (!tiles) tiles = new TilesNode; // the scene graph owns it
    tiles->show(*window(), original_, view());
    return tiles;
}

void OriginalPane::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size()) changeView();
}

void OriginalPane::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) changeView();
}

void OriginalPane::wheelEvent(QWheelEvent* event) {
    // Under X11 the measured way is the driver's guess, so that notches are the better measure there.
    const bool measured =
        !event->pixelDelta().isNull() && QGuiApplication::platformName() != QLatin1String("xcb");
    const double factor = ui::wheelFactor(measured ? event->pixelDelta().y() : 0, event->angleDelta().y());
    if (factor != 1) Q_EMIT wheelTurned(factor, event->position());
    event->accept();
}

} // namespace lumisort::review
