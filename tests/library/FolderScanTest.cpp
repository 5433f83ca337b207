#include "library/FolderScan.h"

#include "platform/time/LocalTime.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumisort::library {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

/// A grey TIFF (TIFF 6.0) of 3 × 2 pixels whose Exif folder holds `date`, in little-endian 16-bit words: nine
/// entries of tag, type, count (2 words) and value (2 words), then the Exif folder of one entry.
std::string photoBytes(const std::string& date = {}) {
    const auto dateBytes = static_cast<std::uint16_t>(date.size() + 1);
    constexpr std::uint16_t exifAt = 122, dateAt = 140;
    const auto pixelsAt = static_cast<std::uint16_t>(dateAt + dateBytes);
    // clang-format off
    const std::uint16_t words[] = {
        0x4949, 42, 8, 0, 9,
        256, 3, 1, 0, 3, 0,         257, 3, 1, 0, 2, 0,         258, 3, 1, 0, 8, 0,
        259, 3, 1, 0, 1, 0,         262, 3, 1, 0, 1, 0,         273, 4, 1, 0, pixelsAt, 0,
        278, 3, 1, 0, 2, 0,         279, 4, 1, 0, 6, 0,         34665, 4, 1, 0, exifAt, 0,
        0, 0,
        1,  36867, 2, dateBytes, 0, dateAt, 0,  0, 0};
    // clang-format on
    std::string bytes(reinterpret_cast<const char*>(words), sizeof words);
    return bytes + date + '\0' + "pixels";
}

FolderScan scan(const files::FileUrl& folder) {
    return scanFolder(files::FileSystem::real(), folder, {});
}

std::vector<std::string> paths(const FolderScan& result, const std::string& prefix) {
    std::vector<std::string> below;
    for (const auto& photo : result.photos) {
        EXPECT_TRUE(photo.url.path().starts_with(prefix)) << photo.url.path();
        below.push_back(photo.url.path().substr(prefix.size()));
    }
    return below;
}

TEST(FolderScan, TakesRegularFilesWithAPhotosExtension) {
    const test::TemporaryFolder folder;
    const std::string longName = std::string(251, 'n') + ".jpg";
    const std::vector<std::string> photos{"a.JPG",  "b.Heic",        "new\nline \"q\".png", "\xFF.tif",
                                          longName, "deep/er/c.x3f", "folder.jpg/d.jpeg",   "two.dots.cr2"};
    for (const auto& name : photos) folder.write(name, photoBytes());
    for (const auto* other :
         {"e.txt", "f", "jpg", "g.", "h.jpg ", ".hidden.jpg", ".jpg", ".folder/i.jpg",
          "My.photoslibrary/j.jpg", "My.LRDATA/deep/k.jpg", "deep/m.app/l.jpg",
          "$RECYCLE.BIN/S-1-5-21/$R1.jpg", "deep/System Volume Information/n.jpg", ".Trash-1000/files/o.jpg",
          "#recycle/p.jpg", "@eaDir/q.jpg/SYNOPHOTO_THUMB_XL.jpg", "RECYCLER/r.jpg"})
        folder.write(other, photoBytes());
    folder.write("empty.jpg", "");
    folder.write("text.nef", "no photo");
    folder.write("cut.tif", photoBytes().substr(0, 20));
    const auto at = [&](const char* name) { return folder.path() / name; };
    std::filesystem::create_symlink(at("a.JPG"), at("link.jpg"));
    std::filesystem::create_symlink(at("none"), at("dangling.jpg"));
    std::filesystem::create_directory_symlink(at("deep"), at("again"));
    std::filesystem::create_directory_symlink(folder.path(), at("deep/cycle"));
    ASSERT_EQ(mkfifo(at("pipe.jpg").c_str(), 0600), 0);

    const auto result = scan(folder.url());
    EXPECT_THAT(paths(result, folder.path().string() + '/'), UnorderedElementsAreArray(photos));
    EXPECT_EQ(result.skipped, 3);
}

TEST(FolderScan, ReadsTheRecordsInNaturalOrder) {
    const test::TemporaryFolder folder;
    folder.write("img_2.jpg", photoBytes("2021:07:04 18:30:00"));
    folder.write("IMG_10.jpg", photoBytes("2021-07-04 18:30"));
    const auto result = scan(folder.url());
    ASSERT_EQ(result.photos.size(), 2U);
    const auto taken = time::parseExifDate("2021:07:04 18:30:00");
    const auto bytes = static_cast<std::int64_t>(photoBytes("2021:07:04 18:30:00").size());
    EXPECT_EQ(result.photos[0], (Photo{folder.url().child("img_2.jpg"), bytes, 3, 2, taken}));
    EXPECT_EQ(result.photos[1].date, std::nullopt);
}

TEST(FolderScan, ReportsEveryHundredAndStopsWithWhatItHas) {
    const test::TemporaryFolder folder;
    for (int i = 0; i < 250; ++i)
        folder.write(std::to_string(i % 7) + '/' + std::to_string(i) + ".jpg", photoBytes());
    std::vector<std::size_t> reports;
    std::stop_source source;
    const auto all = scanFolder(files::FileSystem::real(), folder.url(),
                                [&](std::size_t count) { reports.push_back(count); });
    EXPECT_EQ(all.photos.size(), 250U);
    EXPECT_THAT(reports, ElementsAre(100, 200));

    const auto some = scanFolder(
        files::FileSystem::real(), folder.url(), [&](std::size_t) { source.request_stop(); },
        source.get_token());
    ASSERT_EQ(some.photos.size(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(some.photos, {}, [&](const Photo& photo) {
        return std::ranges::find(all.photos, photo) - all.photos.begin();
    }));
    EXPECT_TRUE(scanFolder(files::FileSystem::real(), folder.url(), {}, source.get_token()).photos.empty());
}

TEST(FolderScan, TakesTheFolderThatIsGivenWhateverItIs) {
    const test::TemporaryFolder folder;
    for (const auto* name : {"plain/a.jpg", ".hidden/a.jpg", "Old.photoslibrary/a.jpg"})
        folder.write(name, photoBytes());
    std::filesystem::create_directory_symlink("plain", folder.path() / "link");
    for (const auto* name : {"plain", "plain/", ".hidden", "Old.photoslibrary", "link", "link/"}) {
        const auto root = folder.url().child(name);
        EXPECT_THAT(paths(scan(root), root.path()), ElementsAre("/a.jpg")) << name;
    }
    for (const auto* name : {"none", "plain/a.jpg", "plain/a.jpg/below"})
        EXPECT_TRUE(scan(folder.url().child(name)).photos.empty()) << name;
}

TEST(FolderScan, PassesOverFoldersThatItMayNotRead) {
    const test::TemporaryFolder folder;
    folder.write("closed/a.jpg", photoBytes());
    folder.write("open/b.jpg", photoBytes());
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(chmod((folder.path() / "closed").c_str(), 0), 0);
    constexpr uid_t nobody = 65534;
    const uid_t user = geteuid();
    ASSERT_EQ(seteuid(user == 0 ? nobody : user), 0); // the administrator may read everything
    const auto result = scan(folder.url());
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_THAT(paths(result, folder.path().string() + '/'), ElementsAre("open/b.jpg"));
    ASSERT_EQ(chmod((folder.path() / "closed").c_str(), 0700), 0);
}

/// Creates `levels` nested folders of that name, each holding one photo.
void nest(const test::TemporaryFolder& folder, const std::string& name, std::size_t levels) {
    const std::string bytes = photoBytes();
    int at = open(folder.path().c_str(), O_DIRECTORY);
    for (std::size_t level = 0; level < levels; ++level) {
        ASSERT_EQ(mkdirat(at, name.c_str(), 0700), 0);
        const int below = openat(at, name.c_str(), O_DIRECTORY);
        close(at);
        at = below;
        const int file = openat(at, "a.jpg", O_CREAT | O_WRONLY, 0600);
        ASSERT_EQ(write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        close(file);
    }
    close(at);
}

TEST(FolderScan, CountsPhotosWhosePathIsTooLongToOpen) {
    const std::pair<std::string, std::size_t> cases[] = {{std::string(250, 'd'), 40},
                                                         {"one of many levels", 250}};
    for (const auto& [name, levels] : cases) {
        const test::TemporaryFolder folder;
        nest(folder, name, levels);
        const auto result = scan(folder.url());
        const auto within = (PATH_MAX - 1 - folder.path().string().size() - 6) / (name.size() + 1);
        EXPECT_EQ(result.photos.size(), within);
        EXPECT_EQ(static_cast<std::size_t>(result.skipped), levels - within);
    }
}

TEST(FolderScan, ReadsRealPhotosAndSurvivesBrokenOnes) {
    LUMISORT_NEEDS_CORPUS();
    const auto root = test::corpus()->string();
    for (const auto& photo : scan(files::FileUrl::fromPath(root + "/photos")).photos)
        EXPECT_GT(photo.width * photo.height * photo.bytes, 0) << photo.url.path();
    EXPECT_GT(scan(files::FileUrl::fromPath(root + "/broken")).skipped, 0);
}

} // namespace
} // namespace lumisort::library
