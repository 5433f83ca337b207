#pragma once

#include "library/Photo.h"
#include "platform/files/FileSystem.h"
#include "similarity/ExactFileStamp.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// A photo together with the stamp of its file from before anything was read.
struct ExactCandidate {
    library::Photo photo;
    ExactFileStamp stamp;
};

struct ExactCopies {
    /// Photos whose files hold the same bytes, two or more in a group: by path, groups by their first photo's
    /// path.
    std::vector<std::vector<library::Photo>> groups;
    /// Files that could not be checked: unreadable, no regular file, or changed during the run.
    std::size_t failed = 0;
};

/// Called after every piece of a file was read, with the bytes of that file read so far. May throw: that
/// fails the file, and tasks::Cancelled ends the run.
using ReadObserver = std::function<void(const files::FileUrl& url, std::int64_t bytesRead)>;

/// Finds photos whose files are the same byte for byte, by SHA-256. Reads only files that share their size
/// with another, one at a time, in pieces of 1 MiB, and writes nothing. A file that changes at any moment of
/// the run counts as failed and is in no group. Looks at `stop` before every file and piece and throws
/// tasks::Cancelled.
ExactCopies findExactCopies(files::FileSystem& system, std::span<const library::Photo> photos,
                            const ReadObserver& didReadChunk = {}, const std::stop_token& stop = {});

} // namespace lumisort::similarity
