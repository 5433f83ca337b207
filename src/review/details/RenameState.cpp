#include "review/details/RenameState.h"

#include <string>
#include <utility>

namespace lumisort::review {

void RenameState::begin(const library::Photo& photo) {
    photo_ = photo;
    setStem(QString::fromUtf8(photo.url.stem()));
    say({});
    Q_EMIT openChanged();
}

void RenameState::cancel() {
    if (!std::exchange(photo_, std::nullopt)) return;
    Q_EMIT openChanged();
}

void RenameState::rename() {
    if (!photo_ || !canRename()) return;
    // A name that is no UTF-8 shows replacement characters; left alone, it is not to become them.
    const bool untouched = stem_ == QString::fromUtf8(photo_->url.stem());
    const auto renamed =
        model_.rename(*photo_, untouched ? std::string(photo_->url.stem()) : stem_.toStdString());
    renamed ? cancel() : say(QString::fromStdString(renamed.error()));
}

void RenameState::setStem(const QString& stem) {
    if (std::exchange(stem_, stem) != stem) Q_EMIT stemChanged();
}

QString RenameState::suffix() const {
    if (!photo_ || photo_->url.extension().empty()) return {};
    return u'.' + QString::fromUtf8(photo_->url.extension());
}

void RenameState::say(const QString& error) {
    if (std::exchange(error_, error) != error) Q_EMIT errorChanged();
}

} // namespace lumisort::review
