#include "review/viewer/ShownPhoto.h"

#include <QLocale>
#include <QStringList>

namespace lumisort::review {

ShownPhoto ShownPhoto::of(const library::Photo& photo) {
    QStringList details;
    if (photo.width > 0 && photo.height > 0)
        details << QStringLiteral("%1 × %2").arg(photo.width).arg(photo.height);
    details << QLocale::c().formattedDataSize(photo.bytes, 1, QLocale::DataSizeSIFormat);
    return {.url = QString::fromUtf8(photo.url.string()),
            .name = QString::fromUtf8(photo.url.name()),
            .details = details.join(QStringLiteral(" · "))};
}

} // namespace lumisort::review
