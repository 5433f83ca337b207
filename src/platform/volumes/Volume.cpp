#include "platform/volumes/Volume.h"

#include "platform/volumes/BlockDevice.h"
#include "platform/volumes/MountTable.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace lumisort::volumes {

namespace {

constexpr std::array<std::string_view, 9> networkFileSystems{
    "nfs", "nfs4", "cifs", "smb3", "afs", "ceph", "9p", "fuse.sshfs", "fuse.rclone"};

/// Where systems mount what no person opens in a file browser.
constexpr std::array<std::string_view, 8> hiddenPlaces{"/boot", "/snap", "/var",      "/proc",
                                                       "/sys",  "/dev",  "/run/user", "/usr"};

bool isUnder(std::string_view path, std::string_view place) {
    return path == place || (path.starts_with(place) && path[place.size()] == '/');
}

/// The device behind a mount, 0 when there is none. Btrfs and FUSE show a number of their own and name the
/// device as their source only.
dev_t deviceOf(const Mount& mount) {
    if (mount.major != 0) return makedev(mount.major, mount.minor);
    struct stat status{};
    if (!mount.source.starts_with("/dev/") || stat(mount.source.c_str(), &status) != 0 ||
        !S_ISBLK(status.st_mode))
        return 0;
    return status.st_rdev;
}

/// Whether this mount shows a whole file system; a part of one is a bind mount (on btrfs, a subvolume).
bool isWhole(const Mount& mount) {
    return mount.root == "/" || mount.fileSystem == "btrfs";
}

} // namespace

std::vector<Volume> mountedVolumes() {
    std::vector<Volume> volumes;
    for (const auto& mount : readMountTable()) {
        const bool local =
            std::ranges::find(networkFileSystems, mount.fileSystem) == networkFileSystems.end();
        const dev_t device = deviceOf(mount);
        if (!isWhole(mount) || (local && device == 0)) continue;
        const auto disk = device != 0 ? inspectBlockDevice(device) : BlockDevice{};
        const bool hidden = mount.mountPoint == "/" || std::ranges::any_of(hiddenPlaces, [&](auto place) {
                                return isUnder(mount.mountPoint, place);
                            });
        volumes.push_back({.url = files::FileUrl::fromPath(mount.mountPoint + "/"),
                           .external = disk.external,
                           .local = local,
                           .browsable = !hidden,
                           .diskImage = disk.diskImage});
    }
    return volumes;
}

} // namespace lumisort::volumes
