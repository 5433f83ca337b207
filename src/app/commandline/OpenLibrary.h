#pragma once

#include "app/commandline/Command.h"
#include "model/LibraryModel.h"
#include "platform/files/FileLock.h"

#include <QCoreApplication>
#include <string>

namespace lumisort::app {

/// The running library of one command: the document locked against other programs, read, and looked at. Used
/// on the main thread.
class OpenLibrary {
public:
    /// `document` is the path of a library document, the user's own when empty. Throws std::runtime_error
    /// when another program has it open, or it cannot be read; nothing has changed then.
    OpenLibrary(const std::string& document, const Dependencies& deps);

    model::LibraryModel& model() { return *model_; }
    const model::LibraryModel& model() const { return *model_; }
    const files::FileUrl& document() const { return document_; }

    /// Runs the event loop until `task` is finished. An interrupt writes what was changed, as a quit does,
    /// and throws tasks::Cancelled.
    void wait(const QFuture<void>& task);
    /// The same; returns what the task returned.
    template <class Result>
    Result result(const QFuture<Result>& task) {
        wait(QFuture<void>(task));
        return task.result();
    }
    /// Waits for marks and looks under way and writes the document if something was changed. Throws
    /// std::runtime_error when that fails.
    void close();

private:
    void runUntil(const QFuture<void>& task, bool stoppable);

    std::stop_token stop_;
    files::FileUrl document_;
    files::FileLock lock_;
    std::unique_ptr<QCoreApplication> application_;
    std::unique_ptr<model::LibraryModel> model_;
};

/// What a library offers to a command that changes nothing in it.
struct LibraryContents {
    std::vector<library::Photo> available; ///< the photos that can be read now, in library order
    library::ReviewMarks marks;
};
LibraryContents libraryContents(const std::string& document, const Dependencies& deps);

} // namespace lumisort::app
