#include "film/render/PrintFile.h"

#include "film/render/FilmRenderError.h"
#include "platform/files/FileError.h"
#include "platform/files/Uuid.h"

#include <cerrno>
#include <utility>

namespace lumisort::film {

namespace {

/// Runs `work`; a failure says that `path` could not be what `action` says.
template <class Work>
auto naming(const char* action, const std::string& path, Work work) {
    try {
        return work();
    } catch (const files::FileError& error) {
        if (error.code() == 0) throw;
        throw files::FileError(action, path, error.code());
    }
}

} // namespace

PrintFile::PrintFile(files::FileSystem& system, files::FileUrl destination, const char* extension)
    : system_(system), destination_(std::move(destination)),
      path_(destination_.parent().child(".lumisort-" + files::randomUuid() + extension).path()),
      file_(naming("write into the folder", destination_.parent().path(),
                   [this] { return system_.create(path_); })) {}

PrintFile::~PrintFile() {
    if (!file_) return;
    file_.reset();
    try {
        system_.remove(path_);
    } catch (const files::FileError&) { // nothing more can be done
    }
}

void PrintFile::write(std::span<const std::byte> bytes) {
    naming("write", destination_.path(), [&] { file_->write(bytes); });
}

void PrintFile::finish() {
    naming("write", destination_.path(), [this] {
        file_->flush();
        file_->close();
    });
    try {
        system_.moveWithoutOverwrite(path_, destination_.path());
    } catch (const files::FileError& error) {
        if (error.code() == EEXIST) throw FilmRenderError(FilmRenderProblem::outputExists);
        throw;
    }
    file_.reset();
    system_.flushDirectory(destination_.parent().path());
}

} // namespace lumisort::film
