#pragma once

#include "library/Photo.h"

#include <QObject>
#include <QString>

namespace lumisort::review {

/// What a view of originals says about one photo.
struct ShownPhoto {
    Q_GADGET
    Q_PROPERTY(QString url MEMBER url)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString details MEMBER details)

public:
    QString url;     ///< as FileUrl writes it
    QString name;    ///< the file's name; bytes that are no UTF-8 replaced
    QString details; ///< "6000 × 4000 · 12.3 MB"; the size in pixels only where it is known

    static ShownPhoto of(const library::Photo& photo);
};

} // namespace lumisort::review
