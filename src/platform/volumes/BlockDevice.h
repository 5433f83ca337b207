#pragma once

#include <sys/types.h>

#include <filesystem>

namespace lumisort::volumes {

/// What the system knows of the disk behind a block device.
struct BlockDevice {
    bool external = false;  ///< a removable medium, or a disk on a bus that leaves the case
    bool diskImage = false; ///< an image file or a virtual disk

    friend bool operator==(const BlockDevice&, const BlockDevice&) = default;
};

/// Reads what the kernel says of `device` below /sys. Encrypted and logical volumes have the properties of
/// the disks below them. A device that is unknown is neither external nor an image.
///
/// External is what the kernel calls removable (cards, sticks, eSATA ports that the firmware marks), what is
/// plugged into a port that it calls removable (Thunderbolt and USB4, which carry PCI Express), every disk on
/// USB or FireWire, and SD cards.
BlockDevice inspectBlockDevice(dev_t device, const std::filesystem::path& sysfs = "/sys");

} // namespace lumisort::volumes
