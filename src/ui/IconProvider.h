#pragma once

#include <QQuickImageProvider>

namespace lumisort::ui {

/// The icons of the program, tinted: `image://icon/<name>/<colour>`, the colour as QColor names it, or as
/// they are drawn: `image://icon/<name>`. Any thread.
class IconProvider : public QQuickImageProvider {
public:
    IconProvider() : QQuickImageProvider(Image) {}
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace lumisort::ui
