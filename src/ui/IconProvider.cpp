#include "ui/IconProvider.h"

#include <QColor>
#include <QPainter>
#include <QSvgRenderer>

namespace lumisort::ui {

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    constexpr int gridPixels = 16; // what the icons are drawn for
    const auto name = id.section(QLatin1Char('/'), 0, 0);
    const auto tint = id.section(QLatin1Char('/'), 1);
    const QSize wanted = requestedSize.isEmpty() ? QSize(gridPixels, gridPixels) : requestedSize;
    *size = wanted;

    QImage image(wanted, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer drawing(QStringLiteral(":/qt/qml/Lumisort/Ui/icons/%1.svg").arg(name));
    QPainter painter(&image);
    drawing.render(&painter);
    if (tint.isEmpty()) return image;
    // The drawing is a mask: its own colour does not matter.
    const QColor colour(tint);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour.isValid() ? colour : QColor(Qt::gray));
    return image;
}

} // namespace lumisort::ui
