#include "review/VisiblePhotos.h"

#include "model/Decision.h"

#include <gmock/gmock.h>

#include <random>

namespace lumisort::review {

using library::ReviewDecision;
using model::PhotoRow;
using model::Section;

namespace {

/// A library of `count` readable photos "/p/<i>/IMG_<i>.jpg".
void fill(model::Library& library, int count) {
    std::vector<library::Photo> photos;
    library::LibrarySurvey survey{
        .folders = {{files::FileUrl::fromPath("/p"), library::FolderState::online}}};
    for (int i = 0; i < count; ++i) {
        const auto number = std::to_string(i);
        photos.push_back({.url = files::FileUrl::fromPath("/p/" + number + "/IMG_" + number + ".jpg")});
        survey.stamps.emplace_back(library::FileStamp{.size = i});
    }
    library.add(files::FileUrl::fromPath("/p"), photos);
    library.apply(std::move(survey));
}

/// A view that knows the list only through its signals.
class Mirror {
public:
    explicit Mirror(VisiblePhotos& list) {
        QObject::connect(&list, &QAbstractItemModel::rowsRemoved,
                         [this](const QModelIndex&, int first, int last) {
                             rows_.erase(rows_.begin() + first, rows_.begin() + last + 1);
                         });
        QObject::connect(&list, &QAbstractItemModel::rowsInserted,
                         [this, &list](const QModelIndex&, int first, int last) {
                             const auto begin = list.rows().begin();
                             rows_.insert(rows_.begin() + first, begin + first, begin + last + 1);
                         });
        QObject::connect(&list, &QAbstractItemModel::modelReset, [this, &list] {
            rows_ = list.rows();
            ++resets_;
        });
        QObject::connect(&list, &QAbstractItemModel::dataChanged,
                         [this](const QModelIndex& first, const QModelIndex& last) {
                             touched_ += last.row() - first.row() + 1;
                         });
    }

    std::vector<PhotoRow> rows_;
    int resets_ = 0;
    int touched_ = 0;
};

} // namespace

TEST(VisiblePhotos, TellsViewsOfEveryChangeWithoutAReset) {
    model::Library library;
    fill(library, 400);
    VisiblePhotos list(library);
    Mirror mirror(list);
    mirror.rows_ = list.rows();
    std::mt19937 random(7);
    const auto pick = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const Section sections[] = {Section::library, Section::keep, Section::cleanup, Section::offline,
                                Section::folder};
    for (int step = 0; step < 300; ++step) {
        for (int i = pick(40); i > 0; --i) {
            const auto row = static_cast<PhotoRow>(pick(400));
            const auto decision = pick(3) == 0   ? std::nullopt
                                  : pick(2) == 0 ? std::optional(ReviewDecision::keep)
                                                 : ReviewDecision::cleanup;
            library.mark(row, decision, {.size = row});
        }
        library.marksApplied();
        ASSERT_EQ(mirror.rows_, list.rows()) << step;
        list.show({.section = sections[pick(5)],
                   .folder = files::FileUrl::fromPath("/p/" + std::to_string(pick(400))),
                   .text = pick(2) ? std::to_string(pick(50)) : ""});
        ASSERT_EQ(mirror.rows_, list.rows()) << step;
        ASSERT_TRUE(std::ranges::is_sorted(list.rows()));
    }
    EXPECT_EQ(mirror.resets_, 0);
}

TEST(VisiblePhotos, AMarkTouchesOneRow) {
    model::Library library;
    fill(library, 1000);
    VisiblePhotos list(library);
    Mirror mirror(list);
    mirror.rows_ = list.rows();
    library.mark(500, ReviewDecision::keep, {.size = 500});
    library.marksApplied();
    EXPECT_EQ(mirror.touched_, 1);
    EXPECT_EQ(list.data(list.index(500), VisiblePhotos::DecisionRole), model::Decision::Keep);
}

} // namespace lumisort::review
