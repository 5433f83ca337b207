#include "library/LibraryScanner.h"

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
using testing::UnorderedElementsAre;

constexpr int photoWidth = 3;
constexpr int photoHeight = 2;

/// A grey little-endian TIFF (TIFF 6.0) of 3 × 2 pixels whose Exif folder holds `date`.
std::string photoBytes(const std::string& date = {}) {
    std::string bytes;
    const auto put = [&](std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
    };
    const auto entry = [&](std::uint32_t tag, std::uint32_t type, std::size_t count, std::size_t value) {
        put(tag, 2);
        put(type, 2);
        put(static_cast<std::uint32_t>(count), 4);
        put(static_cast<std::uint32_t>(value), 4);
    };
    constexpr std::uint32_t ascii = 2, integer16 = 3, integer32 = 4;
    constexpr std::size_t fields = 9, exifAt = 8 + 2 + fields * 12 + 4, dateAt = exifAt + 2 + 12 + 4;
    const std::size_t pixelsAt = dateAt + date.size() + 1;
    bytes = "II";
    put(42, 2);
    put(8, 4);
    put(fields, 2);
    entry(256, integer16, 1, photoWidth);
    entry(257, integer16, 1, photoHeight);
    entry(258, integer16, 1, 8);
    entry(259, integer16, 1, 1);
    entry(262, integer16, 1, 1);
    entry(273, integer32, 1, pixelsAt);
    entry(278, integer16, 1, photoHeight);
    entry(279, integer32, 1, photoWidth * photoHeight);
    entry(34665, integer32, 1, exifAt);
    put(0, 4);
    put(1, 2);
    entry(36867, ascii, date.size() + 1, dateAt);
    put(0, 4);
    bytes += date + '\0' + std::string(photoWidth * photoHeight, '\x7F');
    return bytes;
}

LibraryScanner::Result scan(const files::FileUrl& folder) {
    return LibraryScanner::scan(folder, {});
}

std::vector<std::string> paths(const LibraryScanner::Result& result, const std::string& prefix) {
    std::vector<std::string> below;
    for (const auto& photo : result.photos) {
        EXPECT_TRUE(photo.url.path().starts_with(prefix)) << photo.url.path();
        below.push_back(photo.url.path().substr(prefix.size()));
    }
    return below;
}

TEST(LibraryScanner, TakesRegularFilesWithAPhotosExtension) {
    const test::TemporaryFolder folder;
    const std::string longName = std::string(251, 'n') + ".jpg";
    for (const std::string& name :
         {std::string("a.JPG"), std::string("b.Heic"), std::string("new\nline \"q\".png"),
          std::string("\xFF.tif"), longName, std::string("deep/er/c.x3f"), std::string("folder.jpg/d.jpeg"),
          std::string("two.dots.cr2"),
          // none of these:
          std::string("e.txt"), std::string("f"), std::string("jpg"), std::string("g."),
          std::string("h.jpg "), std::string(".hidden.jpg"), std::string(".jpg"),
          std::string(".folder/i.jpg"), std::string("My.photoslibrary/j.jpg"),
          std::string("My.LRDATA/deep/k.jpg"), std::string("deep/m.app/l.jpg")})
        folder.write(name, photoBytes());
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
    EXPECT_THAT(paths(result, folder.path().string() + '/'),
                UnorderedElementsAre("a.JPG", "b.Heic", "new\nline \"q\".png", "\xFF.tif", longName,
                                     "deep/er/c.x3f", "folder.jpg/d.jpeg", "two.dots.cr2"));
    EXPECT_EQ(result.skipped, 3);
}

TEST(LibraryScanner, ReadsTheRecord) {
    const test::TemporaryFolder folder;
    folder.write("1.jpg", photoBytes("2021:07:04 18:30:00"));
    folder.write("2.jpg", photoBytes("2021-07-04 18:30"));
    folder.write("3.jpg", photoBytes());
    const auto result = scan(folder.url());
    ASSERT_EQ(result.photos.size(), 3U);
    const auto taken = time::parseExifDate("2021:07:04 18:30:00");
    ASSERT_TRUE(taken);
    const auto bytes = static_cast<std::int64_t>(photoBytes("2021:07:04 18:30:00").size());
    EXPECT_EQ(result.photos[0], (Photo{folder.url().child("1.jpg"), bytes, photoWidth, photoHeight, taken}));
    EXPECT_EQ(result.photos[1].date, std::nullopt);
    EXPECT_EQ(result.photos[2].date, std::nullopt);
}

TEST(LibraryScanner, SortsAsAFileBrowserDoes) {
    const test::TemporaryFolder folder;
    for (const auto* name : {"IMG_10.jpg", "b/1.jpg", "IMG_2.jpg", "img_1.jpg", "A/10.jpg", "a/9.jpg"})
        folder.write(name, photoBytes());
    EXPECT_THAT(paths(scan(folder.url()), folder.path().string() + '/'),
                ElementsAre("a/9.jpg", "A/10.jpg", "b/1.jpg", "img_1.jpg", "IMG_2.jpg", "IMG_10.jpg"));
}

TEST(LibraryScanner, ReportsEveryHundredAndStopsWithWhatItHas) {
    const test::TemporaryFolder folder;
    for (int i = 0; i < 250; ++i)
        folder.write(std::to_string(i % 7) + '/' + std::to_string(i) + ".jpg", photoBytes());
    std::vector<std::size_t> reports;
    std::stop_source source;
    const auto all = LibraryScanner::scan(folder.url(), [&](std::size_t count) { reports.push_back(count); });
    EXPECT_EQ(all.photos.size(), 250U);
    EXPECT_THAT(reports, ElementsAre(100, 200));

    const auto some =
        LibraryScanner::scan(folder.url(), [&](std::size_t) { source.request_stop(); }, source.get_token());
    ASSERT_EQ(some.photos.size(), 100U);
    std::size_t next = 0;
    for (const auto& photo : all.photos) {
        if (next < some.photos.size() && photo == some.photos[next]) ++next;
    }
    EXPECT_EQ(next, 100U) << "in another order than the whole";
    EXPECT_TRUE(LibraryScanner::scan(folder.url(), {}, source.get_token()).photos.empty());
}

TEST(LibraryScanner, TakesTheFolderThatIsGivenWhateverItIs) {
    const test::TemporaryFolder folder;
    for (const auto* name : {"plain/a.jpg", ".hidden/a.jpg", "Old.photoslibrary/a.jpg"})
        folder.write(name, photoBytes());
    std::filesystem::create_directory_symlink("plain", folder.path() / "link");
    for (const auto* name : {"plain", "plain/", ".hidden", "Old.photoslibrary", "link", "link/"}) {
        const auto root = folder.url().child(name);
        const auto result = scan(root);
        ASSERT_EQ(result.photos.size(), 1U) << name;
        EXPECT_EQ(result.photos[0].url.path(), root.path() + "/a.jpg");
    }
    for (const auto* name : {"none", "plain/a.jpg", "plain/a.jpg/below"}) {
        const auto result = scan(folder.url().child(name));
        EXPECT_TRUE(result.photos.empty()) << name;
        EXPECT_EQ(result.skipped, 0) << name;
    }
}

TEST(LibraryScanner, PassesOverFoldersThatItMayNotRead) {
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
void nest(const test::TemporaryFolder& folder, const std::string& name, int levels) {
    const std::string bytes = photoBytes();
    int at = open(folder.path().c_str(), O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
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

TEST(LibraryScanner, CountsPhotosWhosePathIsTooLongToOpen) {
    const struct {
        std::string name;
        int levels;
    } cases[] = {{std::string(250, 'd'), 40}, {"one of many levels", 300}};
    for (const auto& [name, levels] : cases) {
        const test::TemporaryFolder folder;
        nest(folder, name, levels);
        const auto result = scan(folder.url());
        const auto within = (PATH_MAX - 1 - folder.path().string().size() - 6) / (name.size() + 1);
        EXPECT_EQ(result.photos.size(), within);
        EXPECT_EQ(result.photos.size() + static_cast<std::size_t>(result.skipped),
                  static_cast<std::size_t>(levels));
    }
}

TEST(LibraryScanner, ReadsRealPhotosAndSurvivesBrokenOnes) {
    LUMISORT_NEEDS_CORPUS();
    const auto root = test::corpus()->string();
    const auto photos = scan(files::FileUrl::fromPath(root + "/photos"));
    EXPECT_GT(photos.photos.size(), 50U);
    EXPECT_GT(std::ranges::count_if(photos.photos, [](const Photo& photo) { return photo.date.has_value(); }),
              30);
    for (const auto& photo : photos.photos) {
        EXPECT_GT(photo.width, 0) << photo.url.path();
        EXPECT_GT(photo.bytes, 0) << photo.url.path();
    }
    const auto broken = scan(files::FileUrl::fromPath(root + "/broken"));
    EXPECT_GT(broken.skipped, 0);
}

} // namespace
} // namespace lumisort::library
