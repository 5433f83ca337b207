#include "platform/volumes/BlockDevice.h"

#include <sys/sysmacros.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <string>
#include <string_view>

namespace lumisort::volumes {

namespace {

namespace fs = std::filesystem;

/// Device mapper on device mapper on … is never this deep.
constexpr int deepestStack = 8;

/// The first line of an attribute file; empty where there is none.
std::string attribute(const fs::path& file) {
    std::string line;
    std::getline(std::ifstream(file), line);
    return line;
}

bool mentions(std::string_view text, std::string_view lowerCaseWord) {
    return !std::ranges::search(text, lowerCaseWord, {}, [](unsigned char c) {
                return static_cast<char>(std::tolower(c));
            }).empty();
}

/// Disks that software makes up: loop7, nbd0, zram1, ram0.
bool isSoftwareDisk(std::string_view name) {
    const auto number = name.find_first_of("0123456789");
    const auto kind = name.substr(0, number);
    return number != std::string_view::npos &&
           (kind == "loop" || kind == "nbd" || kind == "zram" || kind == "ram");
}

/// Whether one of the devices from `disk` up to the machine says that it can be unplugged. Block devices say
/// "1", ports of USB and PCI Express "removable" (Documentation/ABI/testing/sysfs-devices-removable).
bool isBelowRemovable(const fs::path& disk, const fs::path& devices) {
    for (auto device = disk; device.has_relative_path() && device != devices; device = device.parent_path()) {
        const auto removable = attribute(device / "removable");
        if (removable == "1" || removable == "removable") return true;
    }
    return false;
}

/// The bus is a part of the device's path.
bool isOnExternalBus(const fs::path& disk) {
    const auto& path = disk.native();
    return path.find("/usb") != std::string::npos || path.find("/fw") != std::string::npos;
}

bool isSecureDigitalCard(const fs::path& disk) {
    std::error_code none;
    const auto card = fs::canonical(disk / "device", none);
    return !none && fs::read_symlink(card / "subsystem", none).filename() == "mmc" &&
           attribute(card / "type") == "SD";
}

BlockDevice inspect(const fs::path& sysfs, std::string_view number, int depth) {
    std::error_code unknown;
    const auto device = fs::canonical(sysfs / "dev/block" / number, unknown);
    if (unknown || depth > deepestStack) return {};
    if (fs::is_directory(device / "dm")) {
        BlockDevice found;
        for (const auto& slave : fs::directory_iterator(device / "slaves", unknown)) {
            const auto below = inspect(sysfs, attribute(slave.path() / "dev"), depth + 1);
            found.external = found.external || below.external;
            found.diskImage = found.diskImage || below.diskImage;
        }
        return found;
    }
    const auto disk = fs::exists(device / "partition") ? device.parent_path() : device;
    const auto vendor = attribute(disk / "device/vendor"), model = attribute(disk / "device/model");
    return {.external = isBelowRemovable(disk, fs::canonical(sysfs) / "devices") || isOnExternalBus(disk) ||
                        isSecureDigitalCard(disk),
            .diskImage = isSoftwareDisk(disk.filename().native()) || mentions(vendor, "virtual") ||
                         mentions(model, "virtual") || mentions(model, "disk image")};
}

} // namespace

BlockDevice inspectBlockDevice(dev_t device, const fs::path& sysfs) {
    return inspect(sysfs, std::to_string(major(device)) + ':' + std::to_string(minor(device)), 0);
}

} // namespace lumisort::volumes
