#pragma once

#include "app/desktop/DeviceWatch.h"
#include "app/desktop/Lifecycle.h"
#include "library/ThumbnailStore.h"
#include "model/LibraryModel.h"
#include "platform/desktop/MountWatcher.h"
#include "review/LibraryWindow.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace lumisort::app {

/// The one library of the process with its window and what runs behind it. Main thread.
class Desktop : public QObject {
    Q_OBJECT

public:
    /// `exit` ends the program when the library is written.
    Desktop(const files::FileUrl& document, std::function<void()> exit);
    ~Desktop() override;

    /// Loads the window and shows it. Throws std::runtime_error with what QML says when that fails.
    void show();
    /// Before other windows; `activationToken` is the permission that some desktops ask for.
    void comeForward(const QString& activationToken);

    model::LibraryModel& model() { return model_; }
    review::LibraryWindow& library() { return library_; }
    QQmlEngine& engine() { return engine_; }
    Lifecycle& lifecycle() { return lifecycle_; }
    /// Once shown.
    QQuickWindow& window() { return *window_; }

private:
    void windowShown(bool shown);

    model::LibraryModel model_;
    library::ThumbnailStore thumbnails_;
    review::LibraryWindow library_;
    Lifecycle lifecycle_;
    desktop::MountWatcher mounts_;
    DeviceWatch devices_;
    QQmlApplicationEngine engine_; // after what its views show
    QQuickWindow* window_ = nullptr;
};

} // namespace lumisort::app
