#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"

#include <cstdint>

namespace lumisort::similarity {

/// The identity and the state of one regular file at one moment. Two equal stamps say that nothing was done
/// to the file in between: it was neither replaced nor written nor touched.
struct PreciseFileStamp {
    std::int32_t device = 0; ///< as the kernel packs major and minor number into 32 bits
    std::uint64_t inode = 0; ///< to be left out (0) where the file system does not keep it, see VolumeFacts
    std::int64_t size = 0;   ///< bytes
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;
    std::int64_t changedSeconds = 0; ///< last change of the inode
    std::int64_t changedNanoseconds = 0;

    /// Throws files::FileError, naming `url`, where `status` is not that of a regular file (a symbolic link
    /// is none).
    static PreciseFileStamp of(const files::FileStatus& status, const files::FileUrl& url);

    friend bool operator==(const PreciseFileStamp&, const PreciseFileStamp&) = default;
};

} // namespace lumisort::similarity
