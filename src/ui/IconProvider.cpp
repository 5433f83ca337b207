#include "ui/IconProvider.h"

#include <QColor>
#include <QPainter>
#include <QSvgRenderer>

namespace lumisort::ui {

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    constexpr int gridPixels = 16; // what the icons are drawn for
    const auto slash = id.indexOf(QLatin1Char('/'));
    const auto name = id.left(slash);
    const QColor colour(id.mid(slash + 1));
    const QSize wanted = requestedSize.isEmpty() ? QSize(gridPixels, gridPixels) : requestedSize;
    *size = wanted;

    QImage image(wanted, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer drawing(QStringLiteral(":/qt/qml/Lumisort/Ui/icons/%1.svg").arg(name));
    QPainter painter(&image);
    drawing.render(&painter);
    // The drawing is a mask: its own colour does not matter.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour.isValid() ? colour : QColor(Qt::gray));
    return image;
}

} // namespace lumisort::ui
