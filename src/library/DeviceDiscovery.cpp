#include "library/DeviceDiscovery.h"

#include "library/FolderMatcher.h"

#include <algorithm>
#include <iterator>

namespace lumisort::library {

namespace {

bool holdsLibraryFolder(const files::FileUrl& volume, std::span<const files::FileUrl> folders) {
    const FolderMatcher container(volume);
    const auto path = standardizedPath(volume.path());
    return std::ranges::any_of(folders, [&](const files::FileUrl& folder) {
        return standardizedPath(folder.path()) == path || container.contains(folder);
    });
}

} // namespace

std::set<files::FileUrl> DeviceDiscovery::mountedDevices(std::span<const volumes::Volume> volumes) {
    std::set<files::FileUrl> devices;
    for (const auto& volume : volumes)
        if (volume.external && volume.local && volume.browsable && !volume.diskImage)
            devices.insert(volume.url);
    return devices;
}

void DeviceDiscovery::update(std::set<files::FileUrl> nowConnected, std::span<const files::FileUrl> folders) {
    std::erase_if(pending, [&](const files::FileUrl& volume) { return !nowConnected.contains(volume); });
    // Sets are ordered by path, and so is their difference.
    std::vector<files::FileUrl> fresh;
    std::ranges::set_difference(nowConnected, connected, std::back_inserter(fresh));
    connected = std::move(nowConnected);
    std::ranges::copy_if(fresh, std::back_inserter(pending),
                         [&](const files::FileUrl& volume) { return !holdsLibraryFolder(volume, folders); });
}

} // namespace lumisort::library
