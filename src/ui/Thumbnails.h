#pragma once

#include "ui/ThumbnailProvider.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace lumisort::ui {

/// Previews by the text of a photo's file URL, for QML. Main thread.
class Thumbnails : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// See thumbnailSource. "" where `url` is no file URL.
    Q_INVOKABLE static QString source(const QString& url, int revision) {
        const auto photo = files::FileUrl::fromString(url.toStdString());
        return photo ? thumbnailSource(*photo, revision) : QString();
    }
};

} // namespace lumisort::ui
