#pragma once

#include "platform/files/FileUrl.h"

#include <functional>
#include <vector>

namespace lumisort::volumes {

/// A mounted file system: what the offer "New device detected" needs to know of it.
struct Volume {
    files::FileUrl url; ///< its mount point, ending in a slash
    bool external =
        false; ///< on a removable medium or on a bus that leaves the case (USB, Thunderbolt, eSATA, …)
    bool local = true;      ///< not on the network
    bool browsable = true;  ///< meant for people: not under /boot, /snap, /var/lib and the like
    bool diskImage = false; ///< a disk image or a virtual disk

    friend bool operator==(const Volume&, const Volume&) = default;
};

/// Returns the volumes that are mounted now; injected, so that tests plug and unplug drives without hardware.
/// Takes milliseconds and blocks on no device; any thread.
using VolumeSource = std::function<std::vector<Volume>()>;

/// The volumes of this machine, from the mount table and sysfs.
std::vector<Volume> mountedVolumes();

} // namespace lumisort::volumes
