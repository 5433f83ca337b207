#pragma once

#include <cstdint>
#include <optional>

namespace lumisort::files {

/// What is known of the file system that holds a path.
struct VolumeFacts {
    /// Bytes that this user may still write; none where the file system does not say (some network and FUSE
    /// ones, file systems in memory without a limit).
    std::optional<std::int64_t> availableBytes;
    /// Whether a file has the same inode number as long as it exists. FAT, exFAT and most FUSE file systems
    /// invent a new one whenever the kernel has dropped the file from its cache.
    bool keepsInodes = true;
    /// Whether a copy within the file system can share its blocks with the original (reflink) and then takes
    /// no space.
    bool sharesBlocks = false;
};

} // namespace lumisort::files
