#pragma once

#include "review/viewer/FullscreenPhotoState.h"

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <memory>
#include <vector>

class QQmlEngine;

namespace lumisort::review {

/// Opens the full-screen viewer, at most one at a time. Main thread; model, history and engine outlive it.
class FullscreenPhotoController : public QObject {
    Q_OBJECT

public:
    FullscreenPhotoController(model::LibraryModel& model, MarkHistory& history, QQmlEngine& engine,
                              QObject* parent = nullptr);
    ~FullscreenPhotoController() override;

    /// Closes a viewer that is open and opens one at `photo`, found in `photos` by its URL; a photo that is
    /// not there opens nothing.
    void show(const library::Photo& photo, const std::vector<library::Photo>& photos);
    void close();

    /// The window, none while closed.
    QQuickWindow* window() const { return window_; }
    FullscreenPhotoState* state() const { return state_.get(); }

private:
    model::LibraryModel& model_;
    MarkHistory& history_;
    QQmlEngine& engine_;
    std::unique_ptr<FullscreenPhotoState> state_;
    QPointer<QQuickWindow> window_;
};

} // namespace lumisort::review
