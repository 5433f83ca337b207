#include "film/editor/LocalFilmServices.h"

#include "platform/files/AtomicFile.h"
#include "platform/files/FileError.h"
#include "platform/files/ResolvedPath.h"

#include <QPromise>
#include <algorithm>
#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

namespace lumisort::film {

namespace {

/// Finishes `promise` with what `work` returns or throws.
template <class Result, class Work>
void fulfil(QPromise<Result>& promise, Work& work) {
    try {
        if constexpr (std::is_void_v<Result>)
            work();
        else
            promise.addResult(work());
    } catch (...) {
        promise.setException(std::current_exception());
    }
    promise.finish();
}

/// Runs `work` on the executor.
template <class Work>
auto run(tasks::SerialExecutor& executor, Work work) {
    using Result = std::invoke_result_t<Work>;
    auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    executor.post([promise, work = std::move(work)]() mutable { fulfil(*promise, work); });
    return promise->future();
}

/// A callback that finishes `promise` with an outcome.
template <class Result>
auto finishing(const std::shared_ptr<QPromise<Result>>& promise) {
    promise->start();
    return [promise](FilmEditStore::Outcome<Result> outcome) {
        auto work = [&] {
            if (!outcome) std::rethrow_exception(outcome.error());
            return *std::move(outcome);
        };
        fulfil(*promise, work);
    };
}

/// A file that is not there yet, called like the look.
files::FileUrl freeFile(files::FileSystem& system, const files::FileUrl& folder, std::string name) {
    std::ranges::replace(name, '/', '-');
    for (int number = 1;; ++number) {
        const auto file = folder.child(name + (number > 1 ? "-" + std::to_string(number) : "") + ".json");
        try {
            system.status(file.path(), files::Links::doNotFollow);
        } catch (const files::FileError& error) {
            if (error.isMissing()) return file;
            throw;
        }
    }
}

/// The picture without a copy of its pixels.
QImage imageOf(images::Bitmap bitmap) {
    if (bitmap.isEmpty()) return {};
    auto* owner = new images::Bitmap(std::move(bitmap));
    return {owner->rgba().data(),
            owner->width(),
            owner->height(),
            qsizetype{4} * owner->width(),
            QImage::Format_RGBX8888,
            [](void* pixels) { delete static_cast<images::Bitmap*>(pixels); },
            owner};
}

} // namespace

LocalFilmServices::LocalFilmServices(files::FileSystem& system, const files::FileUrl& libraryDocument,
                                     FilmInputs inputs)
    : system_(system), looks_(system, libraryDocument.parent().child("looks").path()),
      engine_(inputs, system), store_(system, filmEditsOf(libraryDocument)) {}

QFuture<FilmEditSnapshot> LocalFilmServices::load(files::FileUrl photo) {
    auto promise = std::make_shared<QPromise<FilmEditSnapshot>>();
    store_.load(std::move(photo), finishing(promise));
    return promise->future();
}

QFuture<library::FileStamp> LocalFilmServices::stamp(files::FileUrl photo) {
    return run(disk_, [this, photo = std::move(photo)] {
        const auto resolved = files::FileUrl::fromPath(files::resolvedPath(system_, photo.path()));
        return library::FileStamp::read(system_, resolved);
    });
}

QFuture<void> LocalFilmServices::save(FilmSettings settings, files::FileUrl photo,
                                      library::FileStamp expected) {
    auto promise = std::make_shared<QPromise<void>>();
    store_.save(settings, std::move(photo), expected, finishing(promise));
    return promise->future();
}

QFuture<std::vector<FilmLook>> LocalFilmServices::looks() {
    return run(disk_, [this] { return looks_.list(); });
}

QFuture<void> LocalFilmServices::saveLook(FilmLook look) {
    return run(disk_, [this, look = std::move(look)] { looks_.save(look); });
}

QFuture<void> LocalFilmServices::removeLook(std::string name) {
    return run(disk_, [this, name = std::move(name)] { looks_.remove(name); });
}

QFuture<FilmLook> LocalFilmServices::readLook(files::FileUrl file) {
    return run(disk_, [this, file = std::move(file)] { return film::readLook(system_, file.path()); });
}

QFuture<files::FileUrl> LocalFilmServices::writeLook(FilmLook look, files::FileUrl folder) {
    return run(disk_, [this, look = std::move(look), folder = std::move(folder)] {
        const auto file = freeFile(system_, folder, look.name);
        files::replaceFile(system_, file.path(), lookText(look));
        return file;
    });
}

QFuture<EditorPreview> LocalFilmServices::preview(files::FileUrl photo, FilmSettings settings,
                                                  std::stop_token stop) {
    return run(renders_, [this, photo = std::move(photo), settings, stop = std::move(stop)] {
        auto preview = engine_.preview(photo, settings, stop);
        return EditorPreview{imageOf(std::move(preview.film)), imageOf(std::move(preview.original)),
                             QSize(preview.originalWidth, preview.originalHeight), preview.isRAW};
    });
}

QFuture<QImage> LocalFilmServices::draft(files::FileUrl photo, FilmSettings settings, int longEdge,
                                         std::stop_token stop) {
    return run(renders_, [this, photo = std::move(photo), settings, longEdge, stop = std::move(stop)] {
        return imageOf(engine_.draft(photo, settings, longEdge, stop));
    });
}

QFuture<QImage> LocalFilmServices::detail(files::FileUrl photo, FilmSettings settings, QRect rectangle,
                                          std::stop_token stop) {
    return run(renders_, [this, photo = std::move(photo), settings, rectangle, stop = std::move(stop)] {
        const Rectangle wanted{rectangle.x(), rectangle.y(), rectangle.width(), rectangle.height()};
        return imageOf(engine_.detail(photo, settings, wanted, stop));
    });
}

void LocalFilmServices::forgetDetail(files::FileUrl photo) {
    renders_.post([this, photo = std::move(photo)] { engine_.forgetDetail(photo); });
}

QFuture<void> LocalFilmServices::exportTiff(files::FileUrl photo, FilmSettings settings,
                                            files::FileUrl destination, std::stop_token stop) {
    return run(renders_,
               [this, photo = std::move(photo), settings, destination = std::move(destination),
                stop = std::move(stop)] { engine_.exportPhoto(photo, settings, destination, {}, stop); });
}

} // namespace lumisort::film
