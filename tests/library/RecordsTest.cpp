#include "library/FileStamp.h"
#include "library/OrganizeSelection.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace lumisort::library {
namespace {

TEST(FileStamp, TellsEveryChangeOfTheItemItself) {
    const test::TemporaryFolder folder;
    const auto photo = folder.write("a.jpg", "12345");
    const auto stampAt = [&](long nanoseconds) {
        const timespec times[2] = {{0, UTIME_OMIT}, {time::Timestamp::unixOffsetSeconds + 10, nanoseconds}};
        EXPECT_EQ(utimensat(AT_FDCWD, photo.path().c_str(), times, 0), 0);
        return FileStamp::read(files::FileSystem::real(), photo);
    };
    const auto stamp = stampAt(250'000'000);
    EXPECT_EQ(stamp.size, 5);
    EXPECT_EQ(stamp.modified, time::Timestamp(10.25));
    EXPECT_NE(stampAt(250'000'100), stamp);
    EXPECT_EQ(stampAt(250'000'000), stamp);
    folder.write("a.jpg", "123456");
    EXPECT_NE(stampAt(250'000'000), stamp);

    std::filesystem::create_symlink("a.jpg", folder.path() / "link.jpg");
    EXPECT_NE(FileStamp::read(files::FileSystem::real(), folder.url().child("link.jpg")).size, 6);
    EXPECT_THROW(FileStamp::read(files::FileSystem::real(), folder.url().child("none")), files::FileError);
}

TEST(OrganizeSelection, LeavesOutWhatIsMarkedForCleanup) {
    std::vector<Photo> photos;
    for (const auto* path : {"/kept", "/cleanup", "/unmarked"})
        photos.push_back({files::FileUrl::fromPath(path)});
    const ReviewMarks marks{{"/kept", {ReviewDecision::keep, {}}},
                            {"/cleanup", {ReviewDecision::cleanup, {99, std::nullopt, std::nullopt}}}};
    EXPECT_EQ(photosToOrganize(photos, marks), (std::vector<Photo>{photos[0], photos[2]}));
}

} // namespace
} // namespace lumisort::library
