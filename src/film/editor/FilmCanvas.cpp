#include "film/editor/FilmCanvas.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace lumisort::film {

namespace {

constexpr std::chrono::milliseconds untilAtRest{60};

/// The layers of a canvas: original, print, export pixels. A layer keeps its texture while its picture is the
/// same. An identity transform node, because Qt's software renderer passes position and clip to children
/// added later only below transform and clip nodes.
class LayersNode : public QSGTransformNode {
public:
    /// Shows the part of `picture`, which covers `place`, that lies inside `clip`; nothing for a null
    /// picture.
    void show(QQuickWindow& window, std::size_t layer, const QImage& picture, const QRectF& place,
              const QRectF& clip, QSGTexture::Filtering filtering) {
        auto& [node, key] = layers_[layer];
        const auto target = place & clip;
        if (picture.isNull() || target.isEmpty()) {
            delete std::exchange(node, nullptr);
            return;
        }
        const bool isNew = !node;
        if (isNew) {
            node = window.createImageNode();
            node->setOwnsTexture(true);
            key = 0;
        }
        if (std::exchange(key, picture.cacheKey()) != picture.cacheKey())
            node->setTexture(window.createTextureFromImage(picture, QQuickWindow::TextureIsOpaque));
        const double x = picture.width() / place.width(), y = picture.height() / place.height();
        node->setFiltering(filtering);
        node->setRect(target);
        node->setSourceRect({(target.x() - place.x()) * x, (target.y() - place.y()) * y, target.width() * x,
                             target.height() * y});
        // With its texture, not before: Qt's software renderer looks at a node as soon as it is added.
        if (isNew) insert(layer);
    }

private:
    /// Layers are painted in the order of the children.
    void insert(std::size_t layer) {
        QSGNode* next = nullptr;
        for (auto above = layer + 1; above < layers_.size() && !next; ++above) next = layers_[above].first;
        auto* node = layers_[layer].first;
        next ? insertChildNodeBefore(node, next) : appendChildNode(node);
    }

    std::array<std::pair<QSGImageNode*, qint64>, 3> layers_{}; ///< node and its picture's cache key
};

} // namespace

FilmCanvas::FilmCanvas(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setClip(true);
    rest_.setSingleShot(true);
    rest_.setInterval(untilAtRest);
    connect(&rest_, &QTimer::timeout, this, &FilmCanvas::askForDetail);
}

void FilmCanvas::setEditor(FilmEditorModel* editor) {
    if (editor_ == editor) return;
    if (editor_) disconnect(editor_, nullptr, this, nullptr);
    editor_ = editor;
    if (editor_) {
        connect(editor_, &FilmEditorModel::previewChanged, this, &FilmCanvas::changeView);
        connect(editor_, &FilmEditorModel::draftChanged, this, &QQuickItem::update);
        connect(editor_, &FilmEditorModel::detailChanged, this, &QQuickItem::update);
    }
    Q_EMIT editorChanged();
    changeView();
}

void FilmCanvas::setActualPixels(bool actualPixels) {
    if (std::exchange(actualPixels_, actualPixels) == actualPixels) return;
    Q_EMIT magnified();
    changeView();
}

void FilmCanvas::setZoom(double zoom) {
    zoom = std::clamp(zoom, 1.0, mostZoom);
    if (std::exchange(zoom_, zoom) == zoom) return;
    Q_EMIT magnified();
    changeView();
}

void FilmCanvas::setCenter(QPointF center) {
    if (std::exchange(center_, center) != center) changeView();
}

void FilmCanvas::setDivider(double divider) {
    divider = std::min(divider, 1.0);
    if (std::exchange(divider_, divider) != divider) changeView();
}

void FilmCanvas::setOriginal(bool original) {
    if (std::exchange(original_, original) != original) changeView();
}

void FilmCanvas::changeView() {
    Q_EMIT viewChanged();
    update();
    rest_.start();
}

ui::PaneView FilmCanvas::view() const {
    return {.pane = size(),
            .picture = editor_->preview()->originalSize,
            .zoom = zoom_,
            .actualPixels = actualPixels_,
            .center = center_,
            .pixelRatio = window() ? window()->effectiveDevicePixelRatio() : 1,
            .position = mapToScene({})};
}

QRectF FilmCanvas::place() const {
    return hasPicture() && !size().isEmpty() ? ui::placeOf(view()) : QRectF();
}

double FilmCanvas::scale100() const {
    if (!hasPicture() || size().isEmpty()) return 1;
    auto fitted = view(), actual = fitted;
    fitted.actualPixels = false;
    actual.actualPixels = true;
    fitted.zoom = actual.zoom = 1;
    return ui::scaleOf(actual) / ui::scaleOf(fitted);
}

QPointF FilmCanvas::dragged(QPointF start, QPointF translation) const {
    return hasPicture() ? ui::draggedCenter(view(), start, translation) : center_;
}

QPointF FilmCanvas::zoomed(double zoom, QPointF anchor) const {
    return hasPicture() ? ui::zoomedCenter(view(), std::clamp(zoom, 1.0, mostZoom), anchor) : center_;
}

QRect FilmCanvas::visiblePixels() const {
    const auto whole = place();
    const auto visible = whole & QRectF({}, size());
    if (visible.isEmpty()) return {};
    const double scale = editor_->preview()->originalSize.width() / whole.width();
    const QRectF pixels((visible.x() - whole.x()) * scale, (visible.y() - whole.y()) * scale,
                        visible.width() * scale, visible.height() * scale);
    return pixels.toAlignedRect() & QRect({}, editor_->preview()->originalSize);
}

void FilmCanvas::askForDetail() {
    if (!editor_) return;
    // The preview has fewer pixels than the photo; below the preview's own scale it shows all there is to
    // see.
    editor_->showDetail(hasPicture() && actualPixels_ && !original_ ? visiblePixels() : QRect());
}

QSGNode* FilmCanvas::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* layers = static_cast<LayersNode*>(old);
    if (!hasPicture() || size().isEmpty()) {
        delete layers;
        return nullptr;
    }
    if (!layers) layers = new LayersNode; // the scene graph owns it
    const auto& preview = *editor_->preview();
    const auto whole = ui::placeOf(view());
    const QRectF pane({}, size());
    const double edge = original_ ? width() : divider_ >= 0 ? std::round(divider_ * width()) : 0;
    const QRectF left(0, 0, edge, height()), right(edge, 0, width() - edge, height());
    const auto filtering = QSGTexture::Linear;
    const auto& film = editor_->draft().isNull() ? preview.film : editor_->draft();
    layers->show(*window(), 0, edge > 0 ? preview.original : QImage(), whole, left & pane, filtering);
    layers->show(*window(), 1, film, whole, right, filtering);
    const QRectF detail = editor_->detailRectangle();
    const double scale = whole.width() / preview.originalSize.width();
    layers->show(*window(), 2, actualPixels_ ? editor_->detail() : QImage(),
                 {whole.x() + detail.x() * scale, whole.y() + detail.y() * scale, detail.width() * scale,
                  detail.height() * scale},
                 right, zoom_ > 1 ? QSGTexture::Nearest : QSGTexture::Linear);
    return layers;
}

void FilmCanvas::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size()) changeView();
}

void FilmCanvas::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) changeView();
}

void FilmCanvas::wheelEvent(QWheelEvent* event) {
    const bool measured =
        !event->pixelDelta().isNull() && QGuiApplication::platformName() != QLatin1String("xcb");
    const double factor = ui::wheelFactor(measured ? event->pixelDelta().y() : 0, event->angleDelta().y());
    if (factor != 1) Q_EMIT wheelTurned(factor, event->position());
    event->accept();
}

} // namespace lumisort::film
