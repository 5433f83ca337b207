#pragma once

#include "app/desktop/DeviceWatch.h"
#include "app/desktop/Lifecycle.h"
#include "film/editor/FilmBatch.h"
#include "film/editor/FilmEditorController.h"
#include "film/editor/FilmPaste.h"
#include "film/editor/LocalFilmServices.h"
#include "library/ThumbnailStore.h"
#include "model/LibraryModel.h"
#include "organize/sheet/OrganizeState.h"
#include "platform/volumes/MountTable.h"
#include "review/LibraryWindow.h"
#include "review/details/PhotoDetailsController.h"
#include "review/viewer/CompareState.h"
#include "review/viewer/FullscreenPhotoController.h"

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
    review::CompareState& compare() { return compare_; }
    organize::OrganizeState& archive() { return archive_; }
    review::FullscreenPhotoController& fullscreen() { return fullscreen_; }
    review::PhotoDetailsController& details() { return details_; }
    film::FilmEditorController& editors() { return editors_; }
    film::FilmBatch& filmBatch() { return filmBatch_; }
    QQmlEngine& engine() { return engine_; }
    Lifecycle& lifecycle() { return lifecycle_; }
    /// Once shown.
    QQuickWindow& window() { return *window_; }

private:
    void windowShown(bool shown);
    /// What would be cut short if the program ended now; "" for nothing.
    QString workUnderWay() const;
    void connectFilm();

    const files::FileUrl document_;
    model::LibraryModel model_;
    library::ThumbnailStore thumbnails_;
    review::LibraryWindow library_;
    review::CompareState compare_;
    organize::OrganizeState archive_;
    film::LocalFilmServices films_;
    film::FilmBatch filmBatch_;
    Lifecycle lifecycle_;
    files::Descriptor mounts_ = volumes::watchMountTable();
    DeviceWatch devices_;
    QQmlApplicationEngine engine_; // after what its views show
    review::FullscreenPhotoController fullscreen_;
    review::PhotoDetailsController details_;
    film::FilmEditorController editors_;
    film::FilmPaste filmPaste_;
    QQuickWindow* window_ = nullptr;
};

} // namespace lumisort::app
