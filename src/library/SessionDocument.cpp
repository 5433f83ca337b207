#include "library/SessionDocument.h"

#include "library/SessionStore.h"

#include <utility>

namespace lumisort::library {

SessionDocument::SessionDocument(files::FileSystem& system, files::FileUrl url, time::Clock clock)
    : system_(system), url_(std::move(url)), clock_(std::move(clock)) {}

std::optional<SessionDocument::Stamp> SessionDocument::stamp() const {
    try {
        const auto status = system_.status(url_.path(), files::Links::follow);
        return Stamp{status.device, status.inode, status.size, status.modified};
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
        return std::nullopt;
    }
}

LibrarySession SessionDocument::load() {
    const std::scoped_lock lock(mutex_);
    unreadable_ = true; // until it was read
    seen_ = stamp();    // before it is read: of a document that changes meanwhile the next save knows
    auto session = SessionStore::load(system_, url_);
    unreadable_ = false;
    return session;
}

std::optional<files::FileUrl> SessionDocument::save(const LibrarySession& session) {
    const std::scoped_lock lock(mutex_);
    const auto present = stamp();
    if (present && present != seen_)
        kept_ = SessionStore::keepChanged(system_, url_, clock_.now());
    else if (present && unreadable_)
        SessionStore::setAsideUnreadable(system_, url_, clock_.now());
    unreadable_ = false;
    seen_ = present; // it is safe now, should the write fail
    SessionStore::save(system_, session, url_);
    seen_ = stamp();
    return std::exchange(kept_, {});
}

} // namespace lumisort::library
