#pragma once

#include "film/edits/FilmEditStore.h"
#include "film/edits/FilmLook.h"
#include "film/optics/FilmSettings.h"
#include "library/FileStamp.h"
#include "platform/files/FileUrl.h"

#include <QFuture>
#include <QImage>
#include <QRect>
#include <QSize>
#include <stop_token>
#include <string>
#include <vector>

namespace lumisort::film {

/// The full preview of one photo, sRGB, 8 bits a channel, at most 1600 pixels on the long edge.
struct EditorPreview {
    QImage film;        ///< the simulated print
    QImage original;    ///< the neutral development; same size and format
    QSize originalSize; ///< of the photo after orientation, in pixels
    bool isRAW = false; ///< developed from sensor data
};

/// What an editor asks of the edit store and of the render engine. Every call returns at once; its future
/// finishes on another thread and carries what the operation threw. Renders throw tasks::Cancelled after a
/// stop was requested. The store's calls run in the order in which they were made, and so do the engine's.
class FilmEditorServices {
public:
    virtual ~FilmEditorServices() = default;

    // The edit store; see FilmEditStore.

    virtual QFuture<FilmEditSnapshot> load(files::FileUrl photo) = 0;
    virtual QFuture<library::FileStamp> stamp(files::FileUrl photo) = 0;
    virtual QFuture<void> save(FilmSettings settings, files::FileUrl photo, library::FileStamp expected) = 0;

    // The user's looks; see FilmLooks.

    virtual QFuture<std::vector<FilmLook>> looks() = 0;
    virtual QFuture<void> saveLook(FilmLook look) = 0;
    virtual QFuture<void> removeLook(std::string name) = 0;
    virtual QFuture<FilmLook> readLook(files::FileUrl file) = 0;
    /// Writes a look into a file of its name, with a number where that is taken, and returns the file.
    virtual QFuture<files::FileUrl> writeLook(FilmLook look, files::FileUrl folder) = 0;

    // The engine.

    virtual QFuture<EditorPreview> preview(files::FileUrl photo, FilmSettings settings,
                                           std::stop_token stop) = 0;
    /// The same picture as the preview's `film`, rendered with its long edge reduced to `longEdge` pixels.
    virtual QFuture<QImage> draft(files::FileUrl photo, FilmSettings settings, int longEdge,
                                  std::stop_token stop) = 0;
    /// The pixels of the export inside `rectangle`, in pixels of the photo after orientation.
    virtual QFuture<QImage> detail(files::FileUrl photo, FilmSettings settings, QRect rectangle,
                                   std::stop_token stop) = 0;
    /// No window shows details of this photo any longer: its full-resolution development is freed.
    virtual void forgetDetail(files::FileUrl photo) = 0;
    virtual QFuture<void> exportTiff(files::FileUrl photo, FilmSettings settings, files::FileUrl destination,
                                     std::stop_token stop) = 0;
};

} // namespace lumisort::film
