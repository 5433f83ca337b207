#include "library/LibrarySurvey.h"

#include "library/FolderMatcher.h"
#include "platform/tasks/Cancellation.h"
#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>

namespace lumisort::library {

using files::FileUrl;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

FileUrl url(std::string_view path) {
    return FileUrl::fromPath(path);
}
Photo photo(std::string_view path) {
    return {.url = url(path)};
}

} // namespace

TEST(FolderMatcher, ComparesWholeComponentsAsText) {
    const struct {
        std::string_view folder, item;
        bool inside;
    } cases[] = {
        {"/A", "/A/x.jpg", true},       {"/A/", "/A/B/x.jpg", true},
        {"/A", "/AB/y.jpg", false},     {"/A", "/A", false},
        {"/A/", "/A", false},           {"/A", "/a/x.jpg", false},
        {"/", "/x.jpg", true},          {"/", "/", false},
        {"/A/./B", "/A/B/x.jpg", true}, {"/A/B/..", "/A/x.jpg", true},
        {"/A", "/A/../C/x.jpg", false}, {"/A", "/B/../A/x.jpg", true},
        {"/A//B", "/A/B//x.jpg", true}, {"/A", "/A/.hidden/x.jpg", true},
        {"/A", "/A/..x/y.jpg", true},   {"/A/..", "/x.jpg", true},
        {"/\xFF", "/\xFF/x.jpg", true}, {"/A", "/A/B/../../x.jpg", false},
    };
    for (const auto& [folder, item, inside] : cases)
        EXPECT_EQ(FolderMatcher(url(folder)).contains(url(item)), inside) << folder << " " << item;
}

TEST(LibrarySurvey, SaysWhatCanBeReachedNow) {
    test::MemoryFileSystem system;
    system.write("/on/a.jpg", "a");
    system.write("/on/locked.jpg", "b");
    system.setPermissions("/on/locked.jpg", 0);
    system.makeFolder("/on/folder.jpg");
    system.makeLink("/on/link.jpg", "/on/a.jpg");
    system.write("/file", "no folder");
    system.write("/secret/c.jpg", "c");
    system.setPermissions("/secret", 0);
    system.write("/elsewhere/d.jpg", "d");

    const std::vector folders{url("/on/"), url("/gone"), url("/file"), url("/secret")};
    const std::vector photos{photo("/on/a.jpg"),     photo("/on/locked.jpg"),  photo("/on/folder.jpg"),
                             photo("/on/link.jpg"),  photo("/on/missing.jpg"), photo("/gone/x.jpg"),
                             photo("/secret/c.jpg"), photo("/elsewhere/d.jpg")};
    const auto found = survey(system, folders, photos);

    EXPECT_THAT(found.folders, UnorderedElementsAre(std::pair(url("/on/"), FolderState::online),
                                                    std::pair(url("/gone"), FolderState::offline),
                                                    std::pair(url("/file"), FolderState::unavailable),
                                                    std::pair(url("/secret"), FolderState::unavailable)));
    std::vector<std::optional<FileStamp>> expected(photos.size());
    expected[0] = FileStamp::read(system, url("/on/a.jpg"));
    EXPECT_EQ(found.stamps, expected);
}

TEST(LibrarySurvey, CostsOneStatusAndOneAccessCheckAPhoto) {
    test::MemoryFileSystem system;
    std::vector<Photo> photos;
    for (int i = 0; i < 50; ++i) {
        photos.push_back(photo("/p/" + std::to_string(i) + ".jpg"));
        system.write(photos.back().url.path(), "x");
    }
    int operations = 0;
    system.before = [&](auto, const std::string& path) { operations += path != "/p"; };
    const auto stamps = survey(system, std::vector{url("/p")}, photos).stamps;
    EXPECT_TRUE(std::ranges::all_of(stamps, [](const auto& stamp) { return stamp.has_value(); }));
    EXPECT_LE(operations, 100);

    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(survey(system, {}, photos, stop.get_token()), tasks::Cancelled);
}

TEST(LibrarySurvey, KeepsThePhotosThatStillLieInAFolder) {
    const std::vector photos{photo("/A/1.jpg"), photo("/A/B/2.jpg"), photo("/C/3.jpg")};
    EXPECT_THAT(photosInside(photos, std::vector{url("/A/B"), url("/C/")}),
                ElementsAre(photos[1], photos[2]));
    EXPECT_THAT(photosInside(photos, {}), ElementsAre());
}

} // namespace lumisort::library
