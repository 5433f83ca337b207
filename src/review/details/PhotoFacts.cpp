#include "review/details/PhotoFacts.h"

#include "platform/text/ByteCount.h"
#include "platform/time/LocalTime.h"

#include <QDateTime>
#include <QLocale>

namespace lumisort::review {

namespace {

const QString unknown = QStringLiteral("Unknown");

QString dimensionsOf(const library::Photo& photo) {
    if (photo.width <= 0 || photo.height <= 0) return unknown;
    return QStringLiteral("%1 × %2").arg(photo.width).arg(photo.height);
}

QString dateOf(const library::Photo& photo) {
    if (!photo.date) return unknown;
    const auto local = time::localTime(*photo.date);
    const QDateTime shown(QDate(local.year, local.month, local.day), QTime(local.hour, local.minute),
                          Qt::UTC);
    return QLocale(QLocale::English).toString(shown, QStringLiteral("MMM d, yyyy, h:mm AP"));
}

} // namespace

PhotoFacts factsOf(const library::Photo& photo, std::optional<library::ReviewDecision> decision) {
    return {.url = QString::fromStdString(photo.url.string()),
            .name = QString::fromUtf8(photo.url.name()),
            .decision = model::Decision::of(decision),
            .dimensions = dimensionsOf(photo),
            .size = QString::fromUtf8(text::byteCount(photo.bytes)),
            .format = QString::fromUtf8(photo.url.extension()).toUpper(),
            .date = dateOf(photo),
            .location = QString::fromUtf8(photo.url.path())};
}

} // namespace lumisort::review
