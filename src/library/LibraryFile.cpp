#include "library/LibraryFile.h"

#include "library/LibraryStorage.h"

#include <utility>

namespace lumisort::library {

LibraryFile::LibraryFile(files::FileSystem& system, files::FileUrl url, time::Clock clock)
    : system_(system), url_(std::move(url)), clock_(std::move(clock)) {}

std::optional<LibraryFile::Stamp> LibraryFile::stamp() const {
    try {
        const auto status = system_.status(url_.path(), files::Links::follow);
        return Stamp{status.device, status.inode, status.size, status.modified};
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
        return std::nullopt;
    }
}

LibraryContents LibraryFile::load() {
    const std::scoped_lock lock(mutex_);
    lastReadFailed_ = true;
    lastSeen_ = stamp(); // before reading: the next save then notices a change during the read
    auto contents = readLibrary(system_, url_);
    lastReadFailed_ = false;
    return contents;
}

KeptDocuments LibraryFile::save(const LibraryContents& contents) {
    const std::scoped_lock lock(mutex_);
    const auto present = stamp();
    if (present && present != lastSeen_)
        unreported_.changed = keepChanged(system_, url_, clock_.now());
    else if (present && lastReadFailed_)
        unreported_.unreadable = setAsideUnreadable(system_, url_, clock_.now());
    lastReadFailed_ = false;
    lastSeen_ = present; // it is kept now, should the write fail
    writeLibrary(system_, contents, url_);
    lastSeen_ = stamp();
    return std::exchange(unreported_, {});
}

} // namespace lumisort::library
