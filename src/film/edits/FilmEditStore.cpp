#include "film/edits/FilmEditStore.h"

#include <utility>

namespace lumisort::film {

namespace {

template <class Work>
auto outcomeOf(Work work) -> FilmEditStore::Outcome<decltype(work())> {
    try {
        if constexpr (std::is_void_v<decltype(work())>) {
            work();
            return {};
        } else {
            return work();
        }
    } catch (const std::exception&) {
        return std::unexpected(std::current_exception());
    }
}

} // namespace

FilmEditStore::FilmEditStore(files::FileSystem& system, files::FileUrl document)
    : file_(system, std::move(document)) {
    executor_.post([this] { file_.removeLeftovers(); });
}

void FilmEditStore::load(files::FileUrl photo, std::function<void(Outcome<FilmEditSnapshot>)> done) {
    executor_.post([this, photo = std::move(photo), done = std::move(done)] {
        done(outcomeOf([&] { return file_.load(photo); }));
    });
}

void FilmEditStore::save(const FilmSettings& settings, files::FileUrl photo,
                         const library::FileStamp& expected, std::function<void(Outcome<void>)> done) {
    executor_.post([this, settings, photo = std::move(photo), expected, done = std::move(done)] {
        done(outcomeOf([&] { file_.save(settings, photo, expected); }));
    });
}

} // namespace lumisort::film
