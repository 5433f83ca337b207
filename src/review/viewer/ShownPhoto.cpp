#include "review/viewer/ShownPhoto.h"

#include "model/Utf8.h"

#include <QLocale>
#include <QStringList>

namespace lumisort::review {

ShownPhoto ShownPhoto::of(const library::Photo& photo) {
    QStringList details;
    if (photo.width > 0 && photo.height > 0)
        details << QStringLiteral("%1 × %2").arg(photo.width).arg(photo.height);
    details << QLocale::c().formattedDataSize(photo.bytes, 1, QLocale::DataSizeSIFormat);
    return {.url = model::fromUtf8(photo.url.string()),
            .name = model::fromUtf8(photo.url.name()),
            .details = details.join(QStringLiteral(" · "))};
}

QString decisionWord(std::optional<library::ReviewDecision> decision) {
    if (!decision) return QStringLiteral("Unmarked");
    return *decision == library::ReviewDecision::keep ? QStringLiteral("Import") : QStringLiteral("Skip");
}

std::optional<library::ReviewDecision> decisionFromWord(const QString& word) {
    for (const auto decision : {library::ReviewDecision::keep, library::ReviewDecision::cleanup})
        if (decisionWord(decision) == word) return decision;
    return std::nullopt;
}

} // namespace lumisort::review
