#pragma once

#include "library/Photo.h"
#include "platform/files/FileSystem.h"
#include "similarity/PreciseFileStamp.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

struct ExactCopies {
    /// Photos whose files hold the same bytes, two or more in a group: by path, groups by their first photo's
    /// path.
    std::vector<std::vector<library::Photo>> groups;
    /// Files that could not be checked: unreadable, no regular file, or changed during the run.
    std::size_t failed = 0;
};

/// Called after every piece of a file was read, with the bytes of that file read so far. May throw
/// files::FileError, which fails the file; anything else ends the run.
using ReadObserver = std::function<void(const files::FileUrl& url, std::int64_t bytesRead)>;

/// Finds photos whose files are the same byte for byte, by SHA-256. Reads only files that share their size
/// with another, all of one size in step: the first page of each, then 1 MiB at a time of those whose digest
/// so far is that of another. So a file is read to its end only where it has a copy, or something that
/// differs from it at the end. One piece is held in memory and at most 64 files are open. Writes nothing.
///
/// A file that changes at any moment of the run counts as failed and is in no group: its stamp is taken
/// before anything is read and compared when it is opened, at its end and after all reading. Throws
/// tasks::Cancelled; `stop` is checked before every file and piece.
ExactCopies findExactCopies(files::FileSystem& system, std::span<const library::Photo> photos,
                            const ReadObserver& didReadChunk = {}, const std::stop_token& stop = {});

} // namespace lumisort::similarity
