#pragma once

#include "platform/time/Timestamp.h"

#include <compare>
#include <cstdint>
#include <optional>

namespace lumisort::files {

enum class FileKind { regular, directory, symbolicLink, other };

/// A file-system time, to the nanosecond, since the Unix epoch.
struct FileTime {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    friend bool operator==(const FileTime&, const FileTime&) = default;
    friend auto operator<=>(const FileTime&, const FileTime&) = default;
    time::Timestamp timestamp() const { return time::Timestamp::fromUnix(seconds, nanoseconds); }
};

/// What statx reports of one file.
struct FileStatus {
    FileKind kind = FileKind::other;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::uint32_t permissions = 0; ///< the twelve mode bits
    FileTime modified;
    FileTime changed;                ///< last change of the inode
    std::optional<FileTime> created; ///< where the file system keeps it

    friend bool operator==(const FileStatus&, const FileStatus&) = default;
};

} // namespace lumisort::files
