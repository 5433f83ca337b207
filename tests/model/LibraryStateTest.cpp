#include "library/OrganizeSelection.h"
#include "model/VisibleRows.h"

#include <gmock/gmock.h>

#include <random>

namespace lumisort::model {

using library::ReviewDecision;
using testing::ElementsAre;

namespace {

/// `count` photos "/p/<i>/IMG_<i>.jpg", all readable.
LibraryState stateOf(int count) {
    std::vector<library::Photo> photos;
    library::LibrarySurvey survey{
        .folders = {{files::FileUrl::fromPath("/p"), library::FolderState::online}}};
    for (int i = 0; i < count; ++i) {
        const auto number = std::to_string(i);
        photos.push_back({.url = files::FileUrl::fromPath("/p/" + number + "/IMG_" + number + ".jpg")});
        survey.stamps.emplace_back(library::FileStamp{.size = i});
    }
    LibraryState state;
    state.setPhotos(std::move(photos));
    state.apply(std::move(survey));
    return state;
}

} // namespace

TEST(VisibleRows, SearchesNamesAsPeopleTypeThem) {
    LibraryState state;
    std::vector<library::Photo> photos;
    for (const auto* path :
         {"/img/IMG_0001.JPG", "/img/my-img.png", "/img/other.jpg", "/x/Cafe\u0301.jpg", "/x/\xFF.jpg"})
        photos.push_back({.url = files::FileUrl::fromPath(path)});
    state.setPhotos(photos);
    state.apply({.stamps = std::vector<std::optional<library::FileStamp>>(5, library::FileStamp{})});
    SearchNames names;
    names.update(state.sharedPhotos());
    const auto found = [&](std::string text) { return visibleRows(state, names, {.text = std::move(text)}); };
    EXPECT_THAT(found("img"), ElementsAre(0, 1)); // not the folder's name
    EXPECT_THAT(found("CAF\u00C9"), ElementsAre(3));
    EXPECT_THAT(found(".jpg"), ElementsAre(0, 2, 3, 4));
    EXPECT_THAT(
        visibleRows(state, names, {.section = Section::folder, .folder = files::FileUrl::fromPath("/x")}),
        ElementsAre(3, 4));
}

TEST(LibraryState, CountsStayRightThroughAnything) {
    auto state = stateOf(50);
    std::mt19937 random(3);
    for (int step = 0; step < 500; ++step) {
        const auto row = static_cast<PhotoRow>(random() % 50);
        const std::optional<ReviewDecision> decisions[] = {std::nullopt, ReviewDecision::keep,
                                                           ReviewDecision::cleanup};
        switch (random() % 4) {
        case 0:
            state.mark(row, decisions[random() % 3], {.size = static_cast<std::int64_t>(random() % 3)});
            break;
        case 1: {
            auto renamed = state.photos()[row];
            renamed.url = files::FileUrl::fromPath("/p/renamed-" + std::to_string(step));
            state.rename(row, renamed);
            break;
        }
        case 2: {
            auto photos = state.photos();
            std::ranges::rotate(photos, photos.begin() + row);
            photos.push_back(photos.front()); // one twice
            state.setPhotos(std::move(photos));
            break;
        }
        default: {
            library::LibrarySurvey survey;
            for (int i = 0; i < 50; ++i)
                survey.stamps.push_back(random() % 4 ? std::optional(library::FileStamp{.size = 1})
                                                     : std::nullopt);
            state.apply(std::move(survey));
        }
        }
        ASSERT_EQ(state.photos().size(), 50u);
        std::size_t readable = 0, keep = 0, cleanup = 0, eligible = 0;
        for (PhotoRow each = 0; each < 50; ++each) {
            ASSERT_EQ(state.find(state.photos()[each].url), each);
            readable += state.isReadable(each);
            keep += state.decision(each) == ReviewDecision::keep;
            cleanup += state.decision(each) == ReviewDecision::cleanup;
            eligible += state.isReadable(each) && library::isToOrganize(state.photos()[each], state.marks());
        }
        ASSERT_EQ(state.readableCount(), readable);
        ASSERT_EQ(state.keptCount(), keep);
        ASSERT_EQ(state.skipCount(), cleanup);
        ASSERT_EQ(state.eligibleCount(), eligible);
    }
}

} // namespace lumisort::model
