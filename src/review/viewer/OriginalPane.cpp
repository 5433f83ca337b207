#include "review/viewer/OriginalPane.h"

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
    redraw();
}

void OriginalPane::show(OriginalDecodeQueue::Answer answer) {
    if (answer && *answer == original_) return; // It was recalled, and its file has not changed.
    original_ = answer ? *std::move(answer) : nullptr;
    error_ = answer ? QString() : QString::fromUtf8(answer.error());
    Q_EMIT statusChanged();
    redraw();
}

OriginalPane::Status OriginalPane::status() const {
    if (original_) return Ready;
    if (!error_.isEmpty()) return Failed;
    return url_.isEmpty() ? Empty : Loading;
}

void OriginalPane::setView(ui::PhotoView* view) {
    if (view_ == view) return;
    if (view_) view_->disconnect(this);
    view_ = view;
    if (view) {
        connect(view, &ui::PhotoView::changed, this, &OriginalPane::redraw);
        connect(view, &ui::PhotoView::panWanted, this, [this](QPointF panes) {
            if (leads_) drag(view_->center(), {-panes.x() * width(), -panes.y() * height()});
        });
    }
    Q_EMIT viewChanged();
    redraw();
}

void OriginalPane::redraw() {
    Q_EMIT placeChanged();
    update();
}

ui::PaneView OriginalPane::paneView() const {
    return {.pane = size(),
            .picture = {original_->width(), original_->height()},
            .zoom = view_->zoom(),
            .actualPixels = view_->actualPixels(),
            .center = view_->center(),
            .pixelRatio = window() ? window()->effectiveDevicePixelRatio() : 1,
            .position = mapToScene({})};
}

void OriginalPane::drag(QPointF start, QPointF translation) {
    if (shows()) view_->setCenter(ui::draggedCenter(paneView(), start, translation));
}

void OriginalPane::zoomAt(double zoom, QPointF anchor) {
    if (shows()) view_->zoomAt(zoom, paneView(), anchor);
}

QSGNode* OriginalPane::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* tiles = static_cast<TilesNode*>(old);
    if (!shows() || size().isEmpty()) {
        delete tiles;
        return nullptr;
    }
    if (!tiles) tiles = new TilesNode; // the scene graph owns it
    tiles->show(*window(), original_, paneView());
    return tiles;
}

void OriginalPane::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size()) redraw();
}

void OriginalPane::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) redraw();
}

void OriginalPane::wheelEvent(QWheelEvent* event) {
    // Under X11 the measured way is the driver's guess, so that notches are the better measure there.
    const bool measured =
        !event->pixelDelta().isNull() && QGuiApplication::platformName() != QLatin1String("xcb");
    const double factor = ui::wheelFactor(measured ? event->pixelDelta().y() : 0, event->angleDelta().y());
    if (factor != 1 && view_) zoomAt(view_->zoom() * factor, event->position());
    event->accept();
}

} // namespace lumisort::review
