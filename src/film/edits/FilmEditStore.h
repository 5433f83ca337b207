#pragma once

#include "film/edits/FilmEditFile.h"
#include "platform/tasks/SerialExecutor.h"

#include <exception>
#include <expected>
#include <functional>

namespace lumisort::film {

/// Loads and saves film edits for the editors, on one thread of its own and in the order of the calls, so
/// that of two saves of a photo the later one holds. Made by the program that holds the library's lock. May
/// be called from any thread, never waits, and calls `done` on its own thread. The destructor returns when
/// all calls are done.
class FilmEditStore {
public:
    /// What FilmEditFile returned or threw.
    template <class T>
    using Outcome = std::expected<T, std::exception_ptr>;

    /// `document` is what filmEditsOf returns for the program's library.
    FilmEditStore(files::FileSystem& system, files::FileUrl document);

    /// See FilmEditFile::load.
    void load(files::FileUrl photo, std::function<void(Outcome<FilmEditSnapshot>)> done);

    /// See FilmEditFile::save.
    void save(const FilmSettings& settings, files::FileUrl photo, const library::FileStamp& expected,
              std::function<void(Outcome<void>)> done);

private:
    FilmEditFile file_;              ///< used on the executor alone
    tasks::SerialExecutor executor_; ///< last: its jobs use the file
};

} // namespace lumisort::film
