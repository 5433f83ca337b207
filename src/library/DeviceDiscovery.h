#pragma once

#include "platform/files/FileUrl.h"
#include "platform/volumes/Volume.h"

#include <set>
#include <span>
#include <vector>

namespace lumisort::library {

/// Keeps track of drives that come and go, to offer those that hold nothing of the library yet.
struct DeviceDiscovery {
    std::set<files::FileUrl> connected;  ///< external volumes at the last update
    std::vector<files::FileUrl> pending; ///< newly connected, without a library folder, in the order detected

    friend bool operator==(const DeviceDiscovery&, const DeviceDiscovery&) = default;

    /// The volumes that may be offered: external, local, browsable, and neither disk images nor virtual
    /// disks.
    static std::set<files::FileUrl> mountedDevices(std::span<const volumes::Volume> volumes);

    /// Takes note of the volumes that are there now: those gone are no longer pending, new ones become
    /// pending (sorted by path) unless a library folder is or lies inside the volume.
    void update(std::set<files::FileUrl> nowConnected, std::span<const files::FileUrl> folders);
};

} // namespace lumisort::library
