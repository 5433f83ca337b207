#include "organize/DestinationNames.h"
#include "organize/OrganizeScene.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace lumisort::organize {

namespace {

using test::midMonth;
using test::OrganizeScene;
using testing::ElementsAre;

std::string repeated(std::string_view text, std::size_t times) {
    std::string result;
    while (times-- > 0) result += text;
    return result;
}

TEST(Plan, GivesEachPhotoAPlaceOfItsOwn) {
    const auto may = midMonth(2024, 5);
    const struct {
        std::string name; // each in a folder of its own
        std::optional<time::Timestamp> date;
        std::string place;
    } rows[] = {
        {"IMG_0001.JPG", may, "2024/05/IMG_0001.JPG"},
        {"IMG_0001.JPG", may, "2024/05/IMG_0001-2.JPG"},
        {"img_0001.jpg", may, "2024/05/img_0001-3.jpg"},
        {"IMG_0001.JPG", midMonth(2025, 1), "2025/01/IMG_0001.JPG"},
        {"IMG_0001.JPG", {}, "Unknown Date/IMG_0001.JPG"},
        // The number that comes next is a photo's own name.
        {"a.jpg", may, "2024/05/a.jpg"},
        {"a-2.jpg", may, "2024/05/a-2.jpg"},
        {"A.jpg", may, "2024/05/A-3.jpg"},
        {"plain", may, "2024/05/plain"},
        {"plain", may, "2024/05/plain-2"},
        // Composed, decomposed, and decomposed in the other case.
        {"\u00e9.jpg", may, "2024/05/\u00e9.jpg"},
        {"e\u0301.jpg", may, "2024/05/e\u0301-2.jpg"},
        {"E\u0301.jpg", may, "2024/05/E\u0301-3.jpg"},
        // 250 bytes before ".jpg". The number leaves 249, which is inside the last character.
        {repeated("\u00e9", 125) + ".jpg", {}, "Unknown Date/" + repeated("\u00e9", 125) + ".jpg"},
        {repeated("\u00e9", 125) + ".jpg", {}, "Unknown Date/" + repeated("\u00e9", 124) + "-2.jpg"},
        {"x." + repeated("y", 253), {}, "Unknown Date/x." + repeated("y", 253)},
        {"x." + repeated("y", 253), {}, "Unknown Date/x." + repeated("y", 251) + "-2"},
    };
    OrganizeScene scene;
    for (const auto& row : rows) {
        const auto number = std::to_string(&row - rows);
        scene.add(number + "/" + row.name, "contents " + number, row.date);
    }
    const auto plan = scene.plan();
    ASSERT_EQ(plan.items.size(), std::size(rows));
    for (std::size_t row = 0; row < std::size(rows); ++row)
        EXPECT_EQ(plan.items[row].destination.path(), scene.root + "/" + rows[row].place) << row;
    EXPECT_TRUE(scene.isEmpty());
}

TEST(Plan, NumbersManyPhotosOfOneNameInLinearTime) {
    DestinationNames names(files::FileUrl::fromPath("/usb"));
    const auto source = files::FileUrl::fromPath("/photos/a.jpg");
    std::string last;
    for (int count = 1; count <= 50'000; ++count) last = names.place(source, {}).path();
    EXPECT_EQ(last, "/usb/Unknown Date/a-50000.jpg");
}

TEST(Plan, CountsDuplicatesAndListsWhatCannotBeRead) {
    OrganizeScene scene;
    scene.add("first.jpg", "abc").add("gone.jpg", "x").add("again.jpg", "abc").add("broken.jpg", "y");
    scene.system.remove("/photos/gone.jpg");
    scene.system.failReads("/photos/broken.jpg", EIO);
    const auto plan = scene.plan();
    const OrganizeItem item{
        .source = scene.photos[0].url,
        .destination = plan.root.child("2024/05/first.jpg"),
        .digest = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad", // FIPS 180-2, B.1
        .bytes = 3};
    EXPECT_THAT(plan.items, ElementsAre(item));
    EXPECT_EQ(plan.duplicates, 1);
    EXPECT_THAT(plan.failures,
                ElementsAre("/photos/gone.jpg: Could not open the file: No such file or directory",
                            "/photos/broken.jpg: Could not read the file: Input/output error"));
    EXPECT_EQ(scene.plan(false).items.size(), 2U);
}

} // namespace

} // namespace lumisort::organize
