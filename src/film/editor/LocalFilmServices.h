#pragma once

#include "film/editor/FilmEditorServices.h"
#include "film/edits/FilmEditStore.h"
#include "film/edits/FilmLook.h"
#include "film/render/FilmRenderEngine.h"
#include "platform/tasks/SerialExecutor.h"

namespace lumisort::film {

/// The editor services of the program: the edit store and looks beside its library document, and one render
/// engine for all editors. The destructor returns when every call is done; renders are to be stopped before.
class LocalFilmServices : public FilmEditorServices {
public:
    /// Takes camera RAW only, unless `inputs` says otherwise.
    LocalFilmServices(files::FileSystem& system, const files::FileUrl& libraryDocument,
                      FilmInputs inputs = FilmInputs::raw);

    QFuture<FilmEditSnapshot> load(files::FileUrl photo) override;
    QFuture<library::FileStamp> stamp(files::FileUrl photo) override;
    QFuture<void> save(FilmSettings settings, files::FileUrl photo, library::FileStamp expected) override;
    QFuture<std::vector<FilmLook>> looks() override;
    QFuture<void> saveLook(FilmLook look) override;
    QFuture<void> removeLook(std::string name) override;
    QFuture<FilmLook> readLook(files::FileUrl file) override;
    QFuture<files::FileUrl> writeLook(FilmLook look, files::FileUrl folder) override;
    QFuture<EditorPreview> preview(files::FileUrl photo, FilmSettings settings,
                                   std::stop_token stop) override;
    QFuture<QImage> draft(files::FileUrl photo, FilmSettings settings, int longEdge,
                          std::stop_token stop) override;
    QFuture<QImage> detail(files::FileUrl photo, FilmSettings settings, QRect rectangle,
                           std::stop_token stop) override;
    void forgetDetail(files::FileUrl photo) override;
    QFuture<void> exportTiff(files::FileUrl photo, FilmSettings settings, files::FileUrl destination,
                             std::stop_token stop) override;

private:
    files::FileSystem& system_;
    FilmLooks looks_;         ///< used on disk_ alone
    FilmRenderEngine engine_; ///< used on renders_ alone
    FilmEditStore store_;
    tasks::SerialExecutor disk_, renders_; ///< last: their jobs use all of the above
};

} // namespace lumisort::film
