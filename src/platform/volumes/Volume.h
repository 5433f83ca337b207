#pragma once

#include "platform/files/FileUrl.h"

#include <functional>
#include <vector>

namespace lumisort::volumes {

/// A mounted file system as far as the offer "New device detected" cares.
struct Volume {
    files::FileUrl url;     ///< its mount point, ending in a slash
    bool external = false;  ///< on a removable medium or on a bus that leaves the case (USB, SD, FireWire, …)
    bool local = true;      ///< not on the network
    bool browsable = true;  ///< meant for people: not under /boot, /snap, /var/lib and the like
    bool diskImage = false; ///< a disk image or a virtual disk

    friend bool operator==(const Volume&, const Volume&) = default;
};

/// Lists the volumes that are mounted now; injected, so that tests plug and unplug drives without hardware.
/// Takes milliseconds and blocks on no device; any thread.
using VolumeSource = std::function<std::vector<Volume>()>;

/// The volumes of this machine, through the mount table, udev and sysfs.
std::vector<Volume> mountedVolumes();

} // namespace lumisort::volumes
