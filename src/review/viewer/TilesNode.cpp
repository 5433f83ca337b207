#include "review/viewer/TilesNode.h"

#include <QImage>
#include <QQuickWindow>
#include <QSGTexture>

namespace lumisort::review {
namespace {

using Original = library::OriginalDecodeQueue::Original;

/// A part of a level without a copy of its pixels; it keeps the original alive.
QImage imageOf(const Original& original, std::size_t level, const QRect& part) {
    const auto& picture = original->levels()[level];
    const auto stride = qsizetype{4} * picture.width();
    const auto* first = picture.rgba().data() + part.y() * stride + qsizetype{4} * part.x();
    return QImage(
        first, part.width(), part.height(), stride,
        original->isOpaque() ? QImage::Format_RGBX8888 : QImage::Format_RGBA8888_Premultiplied,
        [](void* owner) { delete static_cast<Original*>(owner); }, new Original(original));
}

} // namespace

void TilesNode::show(QQuickWindow& window, const Original& original, const ui::PaneView& view) {
    std::map<Key, QSGImageNode*> before;
    if (original == original_)
        before = std::exchange(tiles_, {});
    else {
        while (auto* child = firstChild()) delete child;
        tiles_.clear();
        original_ = original;
    }
    const auto level = original->levelFor(ui::scaleOf(view) * view.pixelRatio);
    const auto& picture = original->levels()[level];
    const auto filtering = view.actualPixels ? QSGTexture::Nearest : QSGTexture::Linear;
    for (const auto& tile :
         ui::visibleTiles(view, static_cast<int>(level), {picture.width(), picture.height()})) {
        const Key key(level, tile.cell.x(), tile.cell.y());
        auto* node = [&] {
            if (auto known = before.extract(key)) return known.mapped();
            auto* made = window.createImageNode();
            made->setOwnsTexture(true);
            made->setTexture(window.createTextureFromImage(
                imageOf(original, level, tile.picture),
                original->isOpaque() ? QQuickWindow::TextureIsOpaque : QQuickWindow::CreateTextureOptions()));
            appendChildNode(made);
            return made;
        }();
        node->setFiltering(filtering);
        node->setSourceRect(tile.source);
        node->setRect(tile.target);
        tiles_.emplace(key, node);
    }
    for (const auto& [key, node] : before) delete node;
}

} // namespace lumisort::review
