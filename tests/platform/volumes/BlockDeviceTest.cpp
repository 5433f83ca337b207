#include "platform/volumes/BlockDevice.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/sysmacros.h>

#include <string>
#include <utility>
#include <vector>

namespace lumisort::volumes {

namespace {

/// A tree laid out like /sys.
class Sysfs {
public:
    /// A device at `path` below /sys/devices with attribute files; with a number it is a block device.
    void add(const std::string& path, const std::vector<std::pair<std::string, std::string>>& attributes,
             const std::string& number = "") const {
        const auto device = folder_.path() / "devices" / path;
        std::filesystem::create_directories(device);
        for (const auto& [name, value] : attributes)
            folder_.write("devices/" + path + '/' + name, value + '\n');
        if (number.empty()) return;
        folder_.write("devices/" + path + "/dev", number + '\n');
        link("dev/block/" + number, device);
    }
    void link(const std::string& path, const std::filesystem::path& target) const {
        std::filesystem::create_directories((folder_.path() / path).parent_path());
        std::filesystem::create_symlink(target, folder_.path() / path);
    }
    std::filesystem::path path() const { return folder_.path(); }

private:
    test::TemporaryFolder folder_;
};

TEST(BlockDevice, IsExternalWhereItCanBeUnpluggedFromTheCase) {
    const struct {
        const char* name;
        const char* port; ///< device above the disk
        const char* portSays;
        const char *disk, *diskSays;
        bool external;
    } cases[] = {
        {"SATA inside", "pci0000:00/0000:00:17.0", "unknown", "ata1/host0/target0:0:0/0:0:0:0/block/sda", "0",
         false},
        {"eSATA that the firmware marks", "pci0000:00/0000:00:17.0", "unknown",
         "ata2/host1/target1:0:0/1:0:0:0/block/sdb", "1", true},
        {"NVMe inside", "pci0000:00/0000:00:1d.0", "fixed", "0000:04:00.0/nvme/nvme0/nvme0n1", "0", false},
        {"NVMe on Thunderbolt", "pci0000:00/0000:00:07.0/0000:2c:00.0/0000:2d:01.0", "removable",
         "0000:2e:00.0/nvme/nvme1/nvme1n1", "0", true},
        {"SATA on Thunderbolt", "pci0000:00/0000:00:07.2/0000:50:00.0", "removable",
         "0000:51:00.0/ata9/host9/target9:0:0/9:0:0:0/block/sdk", "0", true},
        {"disk on USB", "pci0000:00/0000:00:14.0/usb2/2-1", "unknown",
         "2-1:1.0/host6/target6:0:0/6:0:0:0/block/sdc", "0", true},
        {"disk on FireWire", "pci0000:00/0000:00:1e.0/0000:05:00.0/fw1", "",
         "fw1.0/host7/target7:0:0/7:0:0:0/block/sdd", "0", true},
        {"drive for discs", "pci0000:00/0000:00:17.0", "unknown", "ata3/host2/target2:0:0/2:0:0:0/block/sr0",
         "1", true},
    };
    for (const auto& [name, port, portSays, disk, diskSays, external] : cases) {
        SCOPED_TRACE(name);
        const Sysfs sysfs;
        const auto whole = std::string(port) + '/' + disk;
        sysfs.add(port, {{"removable", portSays}});
        sysfs.add(whole, {{"removable", diskSays}}, "8:0");
        sysfs.add(whole + "/part1", {{"partition", "1"}}, "8:1");
        sysfs.add("virtual/block/dm-0", {{"dm/name", "crypt"}}, "254:0"); // encrypted
        sysfs.link("devices/virtual/block/dm-0/slaves/part1", sysfs.path() / "devices" / whole / "part1");
        for (const auto& [major, minor] : {std::pair{8, 0}, {8, 1}, {254, 0}})
            EXPECT_EQ(inspectBlockDevice(makedev(major, minor), sysfs.path()), (BlockDevice{external, false}))
                << major << ':' << minor;
    }
}

TEST(BlockDevice, KnowsCardsImagesAndVirtualDisks) {
    const Sysfs sysfs;
    sysfs.add("pci0/mmc_host/mmc0/mmc0:0001", {{"type", "SD"}});
    sysfs.link("devices/pci0/mmc_host/mmc0/mmc0:0001/subsystem", sysfs.path() / "bus/mmc");
    sysfs.add("pci0/mmc_host/mmc0/mmc0:0001/block/mmcblk0", {{"removable", "0"}}, "179:0");
    sysfs.link("devices/pci0/mmc_host/mmc0/mmc0:0001/block/mmcblk0/device",
               sysfs.path() / "devices/pci0/mmc_host/mmc0/mmc0:0001");
    sysfs.add("virtual/block/loop7", {{"removable", "0"}}, "7:7");
    sysfs.add("pci0/usb1/block/sda", {{"removable", "1"}, {"device/vendor", "Virtual"}}, "8:0");
    sysfs.add("pci0/usb1/block/sdb", {{"removable", "1"}, {"device/model", "My Disk Image"}}, "8:16");
    EXPECT_EQ(inspectBlockDevice(makedev(179, 0), sysfs.path()), (BlockDevice{true, false}));
    EXPECT_EQ(inspectBlockDevice(makedev(7, 7), sysfs.path()), (BlockDevice{false, true}));
    EXPECT_EQ(inspectBlockDevice(makedev(8, 0), sysfs.path()), (BlockDevice{true, true}));
    EXPECT_EQ(inspectBlockDevice(makedev(8, 16), sysfs.path()), (BlockDevice{true, true}));
    EXPECT_EQ(inspectBlockDevice(makedev(1, 99), sysfs.path()), (BlockDevice{false, false}));
}

} // namespace

} // namespace lumisort::volumes
