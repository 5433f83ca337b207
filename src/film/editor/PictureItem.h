#pragma once

#include <QtQml/qqmlregistration.h>

#include <QImage>
#include <QQuickPaintedItem>

namespace lumisort::film {

/// Draws an image whole in the middle of the item. Main thread.
class PictureItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QImage picture READ picture WRITE setPicture NOTIFY pictureChanged)

public:
    explicit PictureItem(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}
    QImage picture() const { return picture_; }
    void setPicture(const QImage& picture);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void pictureChanged();

private:
    QImage picture_;
};

} // namespace lumisort::film
