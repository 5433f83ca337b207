#pragma once

#include "library/KeptDocuments.h"
#include "library/LibraryContents.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"
#include "platform/time/Clock.h"

#include <mutex>
#include <optional>
#include <string>

namespace lumisort::library {

/// The library document as long as a program has it open. Remembers the state in which it last read or wrote
/// the document, so that a save does not overwrite a document that another program (a synchronizer of
/// folders, a restored backup) has put in its place. The program that makes it holds the document's lock. Any
/// thread; calls wait for each other.
class LibraryFile {
public:
    LibraryFile(files::FileSystem& system, files::FileUrl url, time::Clock clock);

    /// See readLibrary. Also removes what killed programs left of their saves.
    LibraryContents load();

    /// Saves `contents`; see writeLibrary. First, once per document found there: an unreadable one is renamed
    /// (setAsideUnreadable), one written by another program is copied (keepChanged). Returns what was kept
    /// since the last save that succeeded. Throws FileError; the document on disk is then unchanged or has
    /// only been renamed.
    KeptDocuments save(const LibraryContents& contents);

private:
    /// Tells one state of the file from any other without reading it. A drive that is plugged in again may
    /// get another device number, so there is none here.
    struct Stamp {
        std::uint64_t inode = 0; ///< 0 where the file system keeps none
        std::int64_t size = 0;
        files::FileTime modified;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };
    std::optional<Stamp> stamp() const;
    bool isAnotherText() const;

    files::FileSystem& system_;
    const files::FileUrl url_;
    const time::Clock clock_;
    std::mutex mutex_;              // guards all below
    std::optional<Stamp> lastSeen_; ///< of the document last read or written; none: there was none
    std::string lastDigest_;        ///< SHA-256 of its text; empty when not known
    bool lastReadFailed_ = false;   ///< the document at `lastSeen_` could not be parsed
    KeptDocuments unreported_;      ///< kept by a save that then failed; returned by the next
};

} // namespace lumisort::library
