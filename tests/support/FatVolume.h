#pragma once

#include "support/TemporaryFolder.h"

#include <string>

namespace lumisort::test {

/// A small FAT or exFAT file system in an image file, mounted while the object lives: no hard links, no
/// permissions, no times to the nanosecond, and mostly no exclusive rename. It needs the right to mount, and
/// mkfs.vfat and a kernel that knows FAT, or mkfs.exfat and the exfat-fuse driver; where those are absent,
/// tests skip.
class FatVolume {
public:
    /// `megabytes` is the size of the image; up to two of them go to the file system itself.
    explicit FatVolume(int megabytes);
    ~FatVolume();
    FatVolume(const FatVolume&) = delete;
    FatVolume& operator=(const FatVolume&) = delete;

    bool isMounted() const { return isMounted_; }
    /// The mounted folder.
    std::string path() const { return (folder_.path() / "volume").string(); }

private:
    TemporaryFolder folder_;
    bool isMounted_ = false;
};

} // namespace lumisort::test

/// Skips the current test, saying why, where no FAT file system can be mounted.
#define LUMISORT_NEEDS_FAT(volume)                                                                           \
    if (!(volume).isMounted())                                                                               \
    GTEST_SKIP() << "no FAT can be mounted here: needs root, and dosfstools or exfatprogs with exfat-fuse"
