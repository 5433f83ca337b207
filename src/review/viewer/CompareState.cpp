#include "review/viewer/CompareState.h"

#include <QDesktopServices>
#include <QUrl>
#include <algorithm>
#include <cmath>

namespace lumisort::review {

using library::Photo;

CompareState::CompareState(model::LibraryModel& model, MarkHistory& history, QObject* parent)
    : QObject(parent), model_(model), history_(history) {
    connect(&model, &model::LibraryModel::countsChanged, this, &CompareState::updateDecisions);
}

void CompareState::open(std::vector<Photo> photos, std::vector<Photo> group) {
    if (photos.size() < 2) return;
    group_ = std::move(group);
    show(false);
    setPhotos(std::move(photos));
    if (!std::exchange(opened_, true)) Q_EMIT openedChanged();
}

void CompareState::close() {
    if (!std::exchange(opened_, false)) return;
    setFlipped(false);
    Q_EMIT openedChanged();
    model_.setCompare(false);
}

void CompareState::setPhotos(std::vector<Photo> photos) {
    setFlipped(false);
    photos_ = std::move(photos);
    pair_ = pairOfGroup();
    active_ = 0;
    Q_EMIT photosChanged();
    Q_EMIT activeChanged();
    updateDecisions();
}

std::int64_t CompareState::pairOfGroup() const {
    if (photos_.size() != 2) return -1;
    const auto position = [this](const Photo& photo) {
        const auto found = std::ranges::find(group_, photo.url, &Photo::url);
        return found == group_.end() ? -1 : std::distance(group_.begin(), found);
    };
    const auto [first, second] = std::minmax({position(photos_[0]), position(photos_[1])});
    return first < 0 || first == second ? -1 : pairIndex(std::ssize(group_), {first, second});
}

void CompareState::movePair(int step) {
    if (pair_ < 0) return;
    if (const auto pair = pairAt(std::ssize(group_), pair_ + step))
        setPhotos(
            {group_[static_cast<std::size_t>(pair->first)], group_[static_cast<std::size_t>(pair->second)]});
}

QVariantList CompareState::photos() const {
    QVariantList list;
    for (const auto& photo : photos_) list << QVariant::fromValue(ShownPhoto::of(photo));
    return list;
}

void CompareState::updateDecisions() {
    QStringList decisions;
    for (const auto& photo : photos_) decisions << decisionWord(model_.decision(photo));
    if (std::exchange(decisions_, decisions) != decisions) Q_EMIT decisionsChanged();
}

void CompareState::setActive(int index) {
    if (index < 0 || index >= std::ssize(photos_) || index == active_) return;
    setFlipped(false);
    active_ = index;
    Q_EMIT activeChanged();
}

void CompareState::moveActive(int step) {
    const auto count = static_cast<int>(photos_.size());
    if (count > 0) setActive(((active_ + step) % count + count) % count);
}

void CompareState::setFlipped(bool flipped) {
    if (std::exchange(flipped_, flipped) != flipped) Q_EMIT flippedChanged();
}

int CompareState::shownIn(int index) const {
    return flipped_ && index == active_ ? (index + 1) % static_cast<int>(photos_.size()) : index;
}

void CompareState::setZoom(double zoom) {
    if (!std::isfinite(zoom)) return;
    const double corrected = std::clamp(zoom, 1.0, maxZoom);
    if (std::exchange(zoom_, corrected) != corrected) Q_EMIT viewChanged();
}

void CompareState::setCenter(QPointF center) {
    if (!std::isfinite(center.x()) || !std::isfinite(center.y())) return;
    const QPointF corrected(std::clamp(center.x(), 0.0, 1.0), std::clamp(center.y(), 0.0, 1.0));
    if (std::exchange(center_, corrected) != corrected) Q_EMIT viewChanged();
}

void CompareState::show(bool actualPixels) {
    actualPixels_ = actualPixels;
    zoom_ = 1;
    center_ = {0.5, 0.5};
    Q_EMIT viewChanged();
}

void CompareState::mark(int index, const QString& decision) {
    if (index < 0 || index >= std::ssize(photos_)) return;
    setActive(index);
    history_.mark({photos_[static_cast<std::size_t>(index)]}, decisionFromWord(decision));
}

void CompareState::openOriginal(int index) const {
    if (index >= 0 && index < std::ssize(photos_))
        QDesktopServices::openUrl(QUrl::fromEncoded(
            QByteArray::fromStdString(photos_[static_cast<std::size_t>(index)].url.string())));
}

} // namespace lumisort::review
