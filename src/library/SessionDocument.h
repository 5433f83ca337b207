#pragma once

#include "library/LibrarySession.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"
#include "platform/time/Clock.h"

#include <mutex>
#include <optional>

namespace lumisort::library {

/// The library document as a running program has it open: it knows what it last read or wrote there, so that
/// what another program (one that keeps folders of two machines equal, a restored backup) puts in its place
/// is not lost with the next write. Any thread; calls wait for each other.
class SessionDocument {
public:
    SessionDocument(files::FileSystem& system, files::FileUrl url, time::Clock clock);

    /// See SessionStore::load.
    LibrarySession load();

    /// See SessionStore::save. Before that, what lies there is put beside it: an unreadable document
    /// (SessionStore::setAsideUnreadable), or one that was neither read nor written by this object
    /// (SessionStore::keepChanged); once for each. Gives back where the latter is now. Throws FileError; what
    /// lay there does so still, or beside.
    std::optional<files::FileUrl> save(const LibrarySession& session);

private:
    /// What tells one state of a file from any other without reading it.
    struct Stamp {
        std::uint64_t device = 0, inode = 0;
        std::int64_t size = 0;
        files::FileTime modified;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };
    std::optional<Stamp> stamp() const;

    files::FileSystem& system_;
    const files::FileUrl url_;
    const time::Clock clock_;
    std::mutex mutex_;                   // guards all below
    std::optional<Stamp> seen_;          ///< none: no document
    bool unreadable_ = false;            ///< what was seen
    std::optional<files::FileUrl> kept_; ///< not told yet
};

} // namespace lumisort::library
