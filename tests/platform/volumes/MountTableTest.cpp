#include "platform/volumes/MountTable.h"

#include "platform/volumes/Volume.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/mount.h>

#include <algorithm>

namespace lumisort::volumes {

using testing::ElementsAre;

TEST(MountTable, ReadsNamesAsTheyAre) {
    const auto mounts =
        parseMountTable("22 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n"
                        "40 22 8:17 / /media/anna/My\\040Card\\134n rw,nosuid shared:30 master:2 - vfat "
                        "/dev/sdb1 rw,fmask=22\n"
                        "41 22 0:50 /@photos /mnt/photos rw - btrfs /dev/sdc2 rw,subvol=/@photos\n"
                        "broken line\n"
                        "42 22 x:y / /bad rw - ext4 /dev/sdd rw\n"
                        "43 22 0:60 / /net rw - nfs4 server:/a\\040b rw");
    EXPECT_THAT(mounts, ElementsAre(Mount{254, 0, "/", "/", "ext4", "/dev/vda"},
                                    Mount{8, 17, "/", "/media/anna/My Card\\n", "vfat", "/dev/sdb1"},
                                    Mount{0, 50, "/@photos", "/mnt/photos", "btrfs", "/dev/sdc2"},
                                    Mount{0, 60, "/", "/net", "nfs4", "server:/a b"}));
}

TEST(MountTable, ALaterMountHidesAnEarlierOneOnTheSamePoint) {
    EXPECT_THAT(parseMountTable("1 0 8:1 / /media/card rw - vfat /dev/sda1 rw\n"
                                "2 1 8:2 / /media/card rw - ext4 /dev/sda2 rw\n"),
                ElementsAre(Mount{8, 2, "/", "/media/card", "ext4", "/dev/sda2"}));
}

TEST(MountTable, SignalsARealMount) {
    const test::TemporaryFolder folder;
    const auto watched = watchMountTable();
    ASSERT_TRUE(watched.isOpen());
    const auto changed = [&] {
        pollfd event{.fd = watched.number(), .events = POLLPRI, .revents = 0};
        return poll(&event, 1, 0) == 1 && (event.revents & POLLPRI) != 0;
    };
    changed();
    ASSERT_FALSE(changed());
    if (mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "this machine does not let tests mount a file system";
    EXPECT_TRUE(changed());
    EXPECT_FALSE(changed()) << "polling takes the event";
    EXPECT_TRUE(std::ranges::any_of(readMountTable(), [&](const Mount& mount) {
        return mount.mountPoint == folder.path() && mount.fileSystem == "tmpfs";
    }));
    EXPECT_FALSE(std::ranges::any_of(mountedVolumes(), [&](const Volume& volume) {
        return volume.url.path() == folder.path().string();
    })) << "a file system in memory has no drive behind it";
    ASSERT_EQ(umount(folder.path().c_str()), 0);
    EXPECT_TRUE(changed());
}

} // namespace lumisort::volumes
