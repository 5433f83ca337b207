#include "library/FingerprintStamp.h"
#include "library/ImportSelection.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace lumisort::library {
namespace {

void setModified(const files::FileUrl& url, std::int64_t seconds, long nanoseconds) {
    const timespec times[2] = {{0, UTIME_OMIT}, {seconds, nanoseconds}};
    ASSERT_EQ(utimensat(AT_FDCWD, url.path().c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

TEST(FingerprintStamp, TellsEveryChange) {
    const test::TemporaryFolder folder;
    auto& system = files::FileSystem::real();
    const auto photo = folder.write("a.jpg", "12345");
    setModified(photo, time::Timestamp::unixOffsetSeconds + 10, 250'000'000);
    const auto stamp = FingerprintStamp::read(system, photo);
    EXPECT_EQ(stamp.size, 5);
    EXPECT_EQ(stamp.modified, time::Timestamp(10.25));
    EXPECT_EQ(FingerprintStamp::read(system, photo), stamp);

    setModified(photo, time::Timestamp::unixOffsetSeconds + 10, 250'000'100);
    EXPECT_NE(FingerprintStamp::read(system, photo), stamp);

    setModified(photo, time::Timestamp::unixOffsetSeconds + 10, 250'000'000);
    EXPECT_EQ(FingerprintStamp::read(system, photo), stamp);
    folder.write("a.jpg", "123456");
    setModified(photo, time::Timestamp::unixOffsetSeconds + 10, 250'000'000);
    EXPECT_NE(FingerprintStamp::read(system, photo), stamp);

    folder.write("other.jpg", "12345");
    std::filesystem::rename(folder.path() / "other.jpg", photo.path());
    setModified(photo, time::Timestamp::unixOffsetSeconds + 10, 250'000'000);
    const auto replaced = FingerprintStamp::read(system, photo);
    EXPECT_EQ(replaced == stamp, replaced.created == stamp.created);
}

TEST(FingerprintStamp, IsOfTheItemItself) {
    const test::TemporaryFolder folder;
    auto& system = files::FileSystem::real();
    const auto photo = folder.write("a.jpg", "12345");
    std::filesystem::create_symlink(photo.path(), folder.path() / "link.jpg");
    EXPECT_NE(FingerprintStamp::read(system, folder.url().child("link.jpg")),
              FingerprintStamp::read(system, photo));
    EXPECT_NO_THROW(FingerprintStamp::read(system, folder.url()));
    EXPECT_THROW(FingerprintStamp::read(system, folder.url().child("none.jpg")), files::FileError);
}

TEST(ImportSelection, LeavesOutWhatIsMarkedForCleanup) {
    const auto photo = [](const char* path) {
        return Photo{files::FileUrl::fromPath(path), 1, 2, 3, std::nullopt};
    };
    const std::vector<Photo> photos{photo("/kept"), photo("/cleanup"), photo("/unmarked"), photo("/stale")};
    const ReviewMarks marks{{"/kept", {ReviewDecision::keep, {}}},
                            {"/cleanup", {ReviewDecision::cleanup, {1, std::nullopt, std::nullopt}}},
                            {"/stale", {ReviewDecision::cleanup, {99, std::nullopt, std::nullopt}}},
                            {"/elsewhere", {ReviewDecision::cleanup, {}}}};
    EXPECT_EQ(ImportSelection::eligible(photos, marks), (std::vector<Photo>{photos[0], photos[2]}));
}

} // namespace
} // namespace lumisort::library
