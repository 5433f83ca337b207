#include "film/editor/PictureItem.h"

#include <QPainter>

namespace lumisort::film {

void PictureItem::setPicture(const QImage& picture) {
    if (picture_.cacheKey() == picture.cacheKey()) return;
    picture_ = picture;
    Q_EMIT pictureChanged();
    update();
}

void PictureItem::paint(QPainter* painter) {
    if (picture_.isNull()) return;
    QRectF place({}, QSizeF(picture_.size()).scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(QRectF({}, size()).center());
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(place, picture_);
}

} // namespace lumisort::film
