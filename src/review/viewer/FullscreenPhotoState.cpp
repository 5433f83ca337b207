#include "review/viewer/FullscreenPhotoState.h"

#include "review/marks/MarkActions.h"
#include "review/viewer/ViewActions.h"

#include <utility>

namespace lumisort::review {

FullscreenPhotoState::FullscreenPhotoState(model::LibraryModel& model, MarkHistory& history,
                                           std::vector<library::Photo> photos, int index, QObject* parent)
    : QObject(parent), model_(model), history_(history), photos_(std::move(photos)), index_(index) {
    connect(&model.library(), &model::Library::countsChanged, this, &FullscreenPhotoState::updateDecision);
    connect(&model.library(), &model::Library::renamed, this, &FullscreenPhotoState::follow);
    connect(this, &FullscreenPhotoState::indexChanged, this, &FullscreenPhotoState::updateDecision);
    addActions();
    updateDecision();
    prefetch();
}

void FullscreenPhotoState::addActions() {
    addMarkActions(actions_, history_, [this] { return std::vector{current()}; });
    addUndoActions(actions_, history_);
    addViewActions(actions_, view_);
    actions_.add(
        ActionSet::PreviousPhoto, [this] { move(-1); },
        [this] { return index_ > 0 ? QString() : QStringLiteral("This is the first photo."); });
    actions_.add(
        ActionSet::NextPhoto, [this] { move(1); },
        [this] { return index_ + 1 < count() ? QString() : QStringLiteral("This is the last photo."); });
    actions_.add(ActionSet::Close, [this] { Q_EMIT closeWanted(); });
    connect(this, &FullscreenPhotoState::indexChanged, &actions_, &ActionSet::refresh);
}

/// Called after the photo on show was requested: its own prefetch, which may be running, must not end before.
void FullscreenPhotoState::prefetch() {
    std::vector<library::OriginalDecodeQueue::Ticket> ahead;
    for (const int step : {direction_, -direction_})
        if (const int at = index_ + step; at >= 0 && at < count())
            ahead.push_back(
                library::OriginalDecodeQueue::shared().prefetch(photos_[static_cast<std::size_t>(at)].url));
    ahead_ = std::move(ahead);
}

void FullscreenPhotoState::follow(const files::FileUrl& before, const library::Photo& after) {
    const bool shown = current().url == before;
    std::ranges::replace(photos_, before, after, &library::Photo::url);
    if (shown) Q_EMIT indexChanged();
}

void FullscreenPhotoState::updateDecision() {
    const auto decision = model::Decision::of(model_.library().decision(current()));
    if (std::exchange(decision_, decision) != decision) Q_EMIT decisionChanged();
}

void FullscreenPhotoState::move(int delta) {
    const int target = index_ + delta;
    if (delta == 0 || target < 0 || target >= count()) return;
    index_ = target;
    direction_ = delta > 0 ? 1 : -1;
    view_.reset();
    Q_EMIT indexChanged();
    prefetch();
}

} // namespace lumisort::review
