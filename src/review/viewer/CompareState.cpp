#include "review/viewer/CompareState.h"

#include "model/Decision.h"
#include "review/marks/MarkActions.h"
#include "review/viewer/ViewActions.h"

#include <QDesktopServices>
#include <QUrl>
#include <algorithm>

namespace lumisort::review {

using library::Photo;

CompareState::CompareState(model::LibraryModel& model, MarkHistory& history, QObject* parent)
    : QObject(parent), model_(model), history_(history) {
    connect(&model.library(), &model::Library::countsChanged, this, &CompareState::updateDecisions);
    connect(&model.library(), &model::Library::renamed, this, &CompareState::follow);
    connect(&model.library(), &model::Library::availabilityChanged, this, [this] {
        if (model_.selection().count() != 2) close(); // a photo of the pair cannot be read any more
    });
    addActions();
}

void CompareState::addActions() {
    addMarkActions(actions_, history_, [this] {
        return opened_ ? std::vector{photos_[static_cast<std::size_t>(active_)]} : std::vector<Photo>();
    });
    addUndoActions(actions_, history_);
    addViewActions(actions_, view_);
    actions_.add(ActionSet::ActualPixels, [this] { view_.setActualPixels(true); });
    actions_.add(ActionSet::PreviousPhoto, [this] { moveActive(-1); });
    actions_.add(ActionSet::NextPhoto, [this] { moveActive(1); });
    actions_.add(
        ActionSet::PreviousPair, [this] { movePair(-1); },
        [this] { return pair() > 1 ? QString() : QStringLiteral("This is the first pair of the group."); });
    actions_.add(
        ActionSet::NextPair, [this] { movePair(1); },
        [this] {
            return pair() < pairCount() ? QString() : QStringLiteral("This is the last pair of the group.");
        });
    connect(this, &CompareState::photosChanged, &actions_, &ActionSet::refresh);
}

void CompareState::open(std::vector<Photo> photos, std::vector<Photo> group) {
    if (photos.size() < 2) return;
    group_ = std::move(group);
    view_.setActualPixels(false);
    setPhotos(std::move(photos));
    if (!std::exchange(opened_, true)) Q_EMIT openedChanged();
}

void CompareState::close() {
    if (!std::exchange(opened_, false)) return;
    setFlipped(false);
    Q_EMIT openedChanged();
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

void CompareState::follow(const files::FileUrl& before, const Photo& after) {
    const bool shown = std::ranges::find(photos_, before, &Photo::url) != photos_.end();
    for (auto* photos : {&photos_, &group_}) std::ranges::replace(*photos, before, after, &Photo::url);
    if (shown) Q_EMIT photosChanged();
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
    QList<int> decisions;
    for (const auto& photo : photos_) decisions << model::Decision::of(model_.library().decision(photo));
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

void CompareState::openOriginal(int index) const {
    if (index >= 0 && index < std::ssize(photos_))
        QDesktopServices::openUrl(QUrl::fromEncoded(
            QByteArray::fromStdString(photos_[static_cast<std::size_t>(index)].url.string())));
}

} // namespace lumisort::review
