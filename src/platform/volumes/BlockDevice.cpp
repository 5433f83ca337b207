#include "platform/volumes/BlockDevice.h"

#include <libudev.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

namespace lumisort::volumes {

namespace {

using Udev = std::unique_ptr<udev, decltype(&udev_unref)>;
using Device = std::unique_ptr<udev_device, decltype(&udev_device_unref)>;

/// Device mapper on device mapper on … never gets this deep.
constexpr int deepestStack = 8;

std::string_view orEmpty(const char* text) {
    return text ? text : std::string_view();
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

/// The bus is a part of the device's path in sysfs, also where udev's database is absent (containers).
bool isOnExternalBus(udev_device* disk) {
    const auto path = orEmpty(udev_device_get_devpath(disk));
    const auto bus = orEmpty(udev_device_get_property_value(disk, "ID_BUS"));
    if (bus == "usb" || bus == "ieee1394") return true;
    return path.find("/usb") != std::string_view::npos || path.find("/fw") != std::string_view::npos;
}

bool isSecureDigitalCard(udev_device* disk) {
    auto* card = udev_device_get_parent_with_subsystem_devtype(disk, "mmc", nullptr);
    return card && orEmpty(udev_device_get_sysattr_value(card, "type")) == "SD";
}

BlockDevice inspect(udev* context, dev_t number, int depth);

/// Encrypted and logical volumes list what they lie on in sysfs.
BlockDevice inspectBelow(udev* context, const std::filesystem::path& slaves, int depth) {
    BlockDevice found;
    std::error_code ignored;
    for (const auto& slave : std::filesystem::directory_iterator(slaves, ignored)) {
        unsigned major = 0, minor = 0;
        char colon = 0;
        if (!(std::ifstream(slave.path() / "dev") >> major >> colon >> minor)) continue;
        const auto below = inspect(context, makedev(major, minor), depth + 1);
        found.external = found.external || below.external;
        found.diskImage = found.diskImage || below.diskImage;
    }
    return found;
}

BlockDevice inspect(udev* context, dev_t number, int depth) {
    const Device device(udev_device_new_from_devnum(context, 'b', number), udev_device_unref);
    if (!device || depth > deepestStack) return {};
    const std::filesystem::path folder = udev_device_get_syspath(device.get());
    if (std::filesystem::is_directory(folder / "dm")) return inspectBelow(context, folder / "slaves", depth);

    auto* disk = orEmpty(udev_device_get_devtype(device.get())) == "partition"
                     ? udev_device_get_parent_with_subsystem_devtype(device.get(), "block", "disk")
                     : device.get();
    if (!disk) disk = device.get();
    const auto vendor = orEmpty(udev_device_get_sysattr_value(disk, "device/vendor"));
    const auto model = orEmpty(udev_device_get_sysattr_value(disk, "device/model"));
    return {.external = orEmpty(udev_device_get_sysattr_value(disk, "removable")) == "1" ||
                        isOnExternalBus(disk) || isSecureDigitalCard(disk),
            .diskImage = isSoftwareDisk(orEmpty(udev_device_get_sysname(disk))) ||
                         mentions(vendor, "virtual") || mentions(model, "virtual") ||
                         mentions(model, "disk image")};
}

} // namespace

BlockDevice inspectBlockDevice(dev_t device) {
    const Udev context(udev_new(), udev_unref);
    return context ? inspect(context.get(), device, 0) : BlockDevice{};
}

} // namespace lumisort::volumes
