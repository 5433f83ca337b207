#include "library/LibraryFile.h"

#include "library/LibraryStorage.h"
#include "platform/files/AtomicFile.h"
#include "platform/files/Digest.h"

#include <utility>

namespace lumisort::library {

LibraryFile::LibraryFile(files::FileSystem& system, files::FileUrl url, time::Clock clock)
    : system_(system), url_(std::move(url)), clock_(std::move(clock)) {}

std::optional<LibraryFile::Stamp> LibraryFile::stamp() const {
    try {
        const auto status = system_.status(url_.path(), files::Links::follow);
        const auto keepsInodes = system_.volumeFacts(url_.path()).keepsInodes;
        return Stamp{keepsInodes ? status.inode : 0, status.size, status.modified};
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
        return std::nullopt;
    }
}

/// Whether the document holds anything but what was last read or written; it may have been touched, or copied
/// back and forth.
bool LibraryFile::isAnotherText() const {
    try {
        return lastDigest_.empty() || files::sha256(system_, url_.path(), {}) != lastDigest_;
    } catch (const files::FileError&) {
        return true; // keeping it meets the same failure, and says so
    }
}

LibraryContents LibraryFile::load() {
    const std::scoped_lock lock(mutex_);
    files::removeLeftovers(system_, url_.path());
    lastReadFailed_ = true;
    lastDigest_.clear();
    lastSeen_ = stamp(); // before reading: the next save then notices a change during the read
    auto contents = readLibrary(system_, url_);
    lastReadFailed_ = false;
    auto digest = files::sha256(system_, url_.path(), {});
    if (stamp() == lastSeen_) lastDigest_ = std::move(digest);
    return contents;
}

KeptDocuments LibraryFile::save(const LibraryContents& contents) {
    const std::scoped_lock lock(mutex_);
    const auto present = stamp();
    if (present && present != lastSeen_) {
        if (isAnotherText()) unreported_.changed = keepChanged(system_, url_, clock_.now());
    } else if (present && lastReadFailed_) {
        unreported_.unreadable = setAsideUnreadable(system_, url_, clock_.now());
    }
    lastReadFailed_ = false;
    lastSeen_ = present; // it is kept now, should the write fail
    auto digest = writeLibrary(system_, contents, url_);
    lastSeen_ = stamp();
    lastDigest_ = std::move(digest);
    return std::exchange(unreported_, {});
}

} // namespace lumisort::library
