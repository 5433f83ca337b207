#pragma once

#include <sys/types.h>

namespace lumisort::volumes {

/// What the system knows of the disk behind a block device.
struct BlockDevice {
    bool external = false;
    bool diskImage = false;
};

/// Looks `device` up through udev and sysfs. Encrypted and logical volumes answer for the disks they lie on.
/// A device that is unknown is neither external nor an image.
BlockDevice inspectBlockDevice(dev_t device);

} // namespace lumisort::volumes
