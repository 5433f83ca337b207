#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"
#include "platform/time/Timestamp.h"

#include <cstdint>
#include <optional>

namespace lumisort::library {

/// A cheap identity of a file's current state. What the program remembers of a photo (a mark, a cached
/// fingerprint, film settings) is stored with the stamp of that moment and holds only while a fresh stamp
/// equals it: exactly, field by field, without tolerance.
struct FileStamp {
    std::int64_t size = 0;
    std::optional<time::Timestamp> modified;
    std::optional<time::Timestamp> created;

    /// One status query on the path; a symbolic link at the end is not followed, as file managers report the
    /// item itself. Throws FileError. Any thread.
    static FileStamp read(files::FileSystem& system, const files::FileUrl& url);

    /// The stamp in a status that was already asked for.
    static FileStamp of(const files::FileStatus& status);

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

} // namespace lumisort::library
