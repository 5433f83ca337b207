#pragma once

#include "platform/files/FileUrl.h"
#include "platform/volumes/Volume.h"

#include <set>
#include <span>
#include <vector>

namespace lumisort::library {

/// Tracks drives as they are plugged in and out, to offer those that hold nothing of the library yet.
struct DeviceDiscovery {
    std::set<files::FileUrl> connected;  ///< external volumes at the last update
    std::vector<files::FileUrl> pending; ///< newly connected, without a library folder, in the order detected

    friend bool operator==(const DeviceDiscovery&, const DeviceDiscovery&) = default;

    /// The volumes that may be offered: external, local, browsable, and neither disk images nor virtual
    /// disks.
    static std::set<files::FileUrl> mountedDevices(std::span<const volumes::Volume> volumes);

    /// Updates both lists from the volumes that are connected now: pending ones that are gone are removed,
    /// new ones become pending (sorted by path) unless a library folder is the volume or inside it.
    void update(std::set<files::FileUrl> nowConnected, std::span<const files::FileUrl> folders);
};

} // namespace lumisort::library
