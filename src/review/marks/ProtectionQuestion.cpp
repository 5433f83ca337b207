#include "review/marks/ProtectionQuestion.h"

#include <QStringList>
#include <algorithm>
#include <utility>

namespace lumisort::review {

using library::Photo;

ProtectionQuestion::ProtectionQuestion(const model::LibraryModel& model, QObject* parent)
    : QObject(parent), model_(model) {}

bool ProtectionQuestion::isAskedAbout(const Photo& photo) const {
    return model_.protection().isProtected(photo) &&
           model_.library().decision(photo) != library::ReviewDecision::cleanup;
}

void ProtectionQuestion::ask(const Photos& photos, Skip skip) {
    const auto asked =
        std::ranges::count_if(photos, [this](const Photo& photo) { return isAskedAbout(photo); });
    if (asked == 0) return skip(photos);
    photos_ = photos;
    asked_ = static_cast<int>(asked);
    skip_ = std::move(skip);
    Q_EMIT changed();
}

void ProtectionQuestion::answer(Answer answer) {
    auto photos = std::exchange(photos_, {});
    asked_ = 0;
    const auto skip = std::exchange(skip_, {});
    Q_EMIT changed();
    if (answer == SkipOthers)
        std::erase_if(photos, [this](const Photo& photo) { return isAskedAbout(photo); });
    if (answer != SkipNone && skip) skip(photos);
}

QString ProtectionQuestion::title() const {
    return asked_ == 1 ? QStringLiteral("Skip a protected photo?")
                       : QStringLiteral("Skip %1 protected photos?").arg(asked_);
}

QString ProtectionQuestion::reason() const {
    QStringList folders;
    QString name;
    for (const auto& photo : photos_) {
        if (!isAskedAbout(photo)) continue;
        name = QString::fromUtf8(photo.url.name());
        const auto folder = model_.protection().folders().holding(photo.url);
        if (!folder) continue;
        const auto shown = QStringLiteral("“%1”").arg(QString::fromUtf8(folder->path()));
        if (!folders.contains(shown)) folders << shown;
    }
    const auto places = (folders.size() == 1 ? QStringLiteral("the protected folder ")
                                             : QStringLiteral("the protected folders ")) +
                        folders.join(QStringLiteral(", "));
    if (photos_.size() == 1) return QStringLiteral("“%1” is in %2.").arg(name, places);
    return QStringLiteral("%1 of %2 photos %3 in %4.")
        .arg(asked_)
        .arg(photos_.size())
        .arg(asked_ == 1 ? QStringLiteral("is") : QStringLiteral("are"), places);
}

} // namespace lumisort::review
