#pragma once

#include "platform/files/Descriptor.h"

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace lumisort::volumes {

/// One line of the kernel's mount table (proc(5), /proc/pid/mountinfo), names unescaped to their bytes.
struct Mount {
    unsigned major = 0,
             minor = 0; ///< of the device; major 0 where the file system makes up its own (btrfs, FUSE)
    std::string root;   ///< the folder of the file system that is mounted, "/" for all of it
    std::string mountPoint;
    std::string fileSystem; ///< type, e.g. "ext4", "fuseblk"
    std::string source;     ///< e.g. "/dev/sdb1", "server:/export", "tmpfs"

    friend bool operator==(const Mount&, const Mount&) = default;
};

/// All well-formed lines of a mount table, in its order; a later mount on the same point hides an earlier
/// one, so only the last of them is there.
std::vector<Mount> parseMountTable(std::string_view text);

/// Opens this process's mount table for an event loop: the descriptor has an exceptional condition (POLLPRI,
/// proc(5)) whenever something was mounted or unmounted since it was last polled. Polling takes the event, so
/// only one may poll a descriptor. Not open where there is no /proc.
files::Descriptor watchMountTable();

/// This process's mount table; empty when it cannot be read.
std::vector<Mount> readMountTable();

} // namespace lumisort::volumes
