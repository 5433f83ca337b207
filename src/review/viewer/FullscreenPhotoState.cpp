#include "review/viewer/FullscreenPhotoState.h"

#include <algorithm>
#include <cmath>

namespace lumisort::review {

FullscreenPhotoState::FullscreenPhotoState(model::LibraryModel& model, MarkHistory& history,
                                           std::vector<library::Photo> photos, int index, QObject* parent)
    : QObject(parent), model_(model), history_(history), photos_(std::move(photos)), index_(index) {
    connect(&model, &model::LibraryModel::countsChanged, this, &FullscreenPhotoState::updateDecision);
    connect(this, &FullscreenPhotoState::indexChanged, this, &FullscreenPhotoState::updateDecision);
    updateDecision();
    prefetch();
}

/// After the photo on show was asked for: what is being decoded ahead and is shown now must not be let go
/// between.
void FullscreenPhotoState::prefetch() {
    std::vector<library::OriginalDecodeQueue::Ticket> ahead;
    for (const int step : {direction_, -direction_})
        if (const int at = index_ + step; at >= 0 && at < count())
            ahead.push_back(
                library::OriginalDecodeQueue::shared().prefetch(photos_[static_cast<std::size_t>(at)].url));
    ahead_ = std::move(ahead);
}

void FullscreenPhotoState::updateDecision() {
    const auto decision = decisionWord(model_.decision(current()));
    if (std::exchange(decision_, decision) != decision) Q_EMIT decisionChanged();
}

void FullscreenPhotoState::setZoom(double zoom) {
    if (!std::isfinite(zoom)) return;
    zoom_ = std::clamp(zoom, 1.0, maxZoom);
    if (zoom_ == 1) center_ = {0.5, 0.5};
    Q_EMIT viewChanged();
}

void FullscreenPhotoState::setCenter(QPointF center) {
    if (!std::isfinite(center.x()) || !std::isfinite(center.y())) return;
    center_ = {std::clamp(center.x(), 0.0, 1.0), std::clamp(center.y(), 0.0, 1.0)};
    Q_EMIT viewChanged();
}

void FullscreenPhotoState::move(int delta) {
    const int target = index_ + delta;
    if (delta == 0 || target < 0 || target >= count()) return;
    index_ = target;
    direction_ = delta > 0 ? 1 : -1;
    zoom_ = 1;
    center_ = {0.5, 0.5};
    Q_EMIT viewChanged();
    Q_EMIT indexChanged();
    prefetch();
}

void FullscreenPhotoState::mark(const QString& decision) {
    history_.mark({current()}, decisionFromWord(decision));
}

bool FullscreenPhotoState::press(int key, int modifiers) {
    if (modifiers & Qt::ControlModifier) {
        if (key == Qt::Key_Z) {
            modifiers & Qt::ShiftModifier ? history_.redo() : history_.undo();
            return true;
        }
        const auto word = key == Qt::Key_K   ? decisionWord(library::ReviewDecision::keep)
                          : key == Qt::Key_D ? decisionWord(library::ReviewDecision::cleanup)
                          : key == Qt::Key_U ? decisionWord(std::nullopt)
                                             : QString();
        if (!word.isEmpty()) mark(word);
        return !word.isEmpty();
    }
    switch (key) {
    case Qt::Key_Equal:
    case Qt::Key_Plus:
        setZoom(zoom_ * zoomPerKey);
        return true;
    case Qt::Key_Minus:
        setZoom(zoom_ / zoomPerKey);
        return true;
    case Qt::Key_0:
        setZoom(1);
        return true;
    case Qt::Key_Left:
        move(-1);
        return true;
    case Qt::Key_Right:
        move(1);
        return true;
    case Qt::Key_Escape:
        close();
        return true;
    default:
        return false;
    }
}

} // namespace lumisort::review
