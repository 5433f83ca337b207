#include "ReviewWorld.h"

namespace lumisort::review {

using library::ReviewDecision;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PhotoCursorTest : public ReviewWorld {
protected:
    PhotoCursor& cursor() { return *window_->cursor(); }
    std::string here() {
        const auto photo = cursor().current();
        return photo ? std::string(photo->url.name()) : "";
    }
};

} // namespace

TEST_F(PhotoCursorTest, MovesTogglesAndExtends) {
    open({"a.jpg", "b.jpg", "c.jpg", "d.jpg", "e.jpg"});
    cursor().setColumns(2);
    cursor().toggle(); // nowhere yet
    EXPECT_THAT(selectedNames(), IsEmpty());
    cursor().move(1, 0, false);
    EXPECT_EQ(here(), "a.jpg") << "the first move only arrives";
    cursor().move(0, 1, false);
    EXPECT_EQ(here(), "c.jpg");
    cursor().toggle();
    EXPECT_THAT(selectedNames(), ElementsAre("c.jpg"));
    EXPECT_EQ(model_->selection().focused(), named(2).url);
    cursor().move(1, 0, true);
    cursor().move(1, 0, true);
    EXPECT_THAT(selectedNames(), ElementsAre("c.jpg", "d.jpg", "e.jpg"));
    cursor().move(-1, 0, true);
    EXPECT_THAT(selectedNames(), ElementsAre("c.jpg", "d.jpg")) << "an extension can shrink";
    cursor().moveToEnd(true, true);
    EXPECT_THAT(selectedNames(), ElementsAre("a.jpg", "b.jpg", "c.jpg")) << "and turn around";
    cursor().move(100, 0, false);
    EXPECT_EQ(here(), "e.jpg");
    cursor().selectAll();
    EXPECT_EQ(model_->selection().count(), 5);
}

TEST_F(PhotoCursorTest, ClicksToggleAndShiftAddsARange) {
    open({"a.jpg", "b.jpg", "c.jpg", "d.jpg", "e.jpg"});
    std::vector<int> opened;
    QObject::connect(window_->state(), &WindowState::fullscreenWanted,
                     [&](const auto&, int index) { opened.push_back(index); });
    cursor().click(4, false);
    cursor().click(0, false);
    cursor().click(2, true);
    EXPECT_THAT(selectedNames(), ElementsAre("a.jpg", "b.jpg", "c.jpg", "e.jpg"));
    cursor().click(1, false);
    EXPECT_THAT(selectedNames(), ElementsAre("a.jpg", "c.jpg", "e.jpg"));
    cursor().click(3, false);
    cursor().doubleClick(3);
    EXPECT_THAT(selectedNames(), ElementsAre("a.jpg", "c.jpg", "e.jpg")) << "opening selects nothing";
    EXPECT_THAT(opened, ElementsAre(3));
}

TEST_F(PhotoCursorTest, StaysWithItsPhotoAndTakesTheNextOnesPlace) {
    open({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
    for (const auto index : {1u, 2u, 3u})
        model_->marking().mark({named(index)}, library::ReviewDecision::keep);
    settle();
    window_->showSection(WindowState::Keep);
    cursor().move(0, 0, false);
    cursor().move(1, 0, false);
    EXPECT_EQ(here(), "c.jpg");
    model_->marking().mark({named(1)}, std::nullopt);
    settle();
    EXPECT_EQ(here(), "c.jpg");
    EXPECT_EQ(cursor().position(), 0);
    model_->marking().mark({named(2)}, library::ReviewDecision::cleanup);
    settle();
    EXPECT_EQ(here(), "d.jpg");
    model_->marking().mark({named(3)}, library::ReviewDecision::cleanup);
    settle();
    EXPECT_EQ(cursor().position(), -1);
}

TEST_F(PhotoCursorTest, SeeksNamesAndWalksThroughGroups) {
    open({"Beach.jpg", "alps 2.jpg", "ALPS 10.jpg", "boat.jpg"});
    cursor().seek("al");
    EXPECT_EQ(here(), "alps 2.jpg");
    cursor().seek("alps 1");
    EXPECT_EQ(here(), "ALPS 10.jpg");
    cursor().seek("b");
    EXPECT_EQ(here(), "boat.jpg");
    cursor().seek("x");
    EXPECT_EQ(here(), "boat.jpg");

    findGroups({{3, 0}, {1, 2}});
    EXPECT_EQ(window_->page(), LibraryWindow::Groups);
    window_->groups()->setColumns(3);
    cursor().move(1, 0, false);
    cursor().move(1, 0, false);
    EXPECT_EQ(here(), "Beach.jpg");
    cursor().move(0, 1, false);
    EXPECT_EQ(here(), "ALPS 10.jpg");
    window_->state()->setQuery("alps");
    EXPECT_EQ(here(), "ALPS 10.jpg");
    EXPECT_EQ(cursor().position(), 1);
    cursor().toggle();
    EXPECT_THAT(selectedNames(), ElementsAre("ALPS 10.jpg"));
}

TEST_F(PhotoCursorTest, GroupsScrollAsHeadingsAndRows) {
    open({"a.jpg", "b.jpg", "c.jpg", "d.jpg", "e.jpg"});
    findGroups({{0, 1, 2}, {3, 4}});
    auto& rows = *window_->groups();
    rows.setColumns(2);
    std::vector<std::string> lines;
    for (int row = 0; row < rows.rowCount(); ++row) {
        const auto value = [&](SimilarRows::Role role) { return rows.index(row).data(role).toInt(); };
        std::string photos;
        for (const auto& each : rows.index(row).data(SimilarRows::PhotosRole).toList()) {
            const auto photo = each.value<GroupPhoto>();
            photos += " " + photo.name.toStdString() + "=" + photo.note.toStdString();
        }
        lines.push_back(std::to_string(value(SimilarRows::NumberRole)) +
                        (rows.index(row).data(SimilarRows::HeadingRole).toBool()
                             ? ": " + std::to_string(value(SimilarRows::CountRole))
                             : " from " + std::to_string(value(SimilarRows::FirstRole)) + photos));
    }
    EXPECT_THAT(lines, ElementsAre("1: 3", "1 from 0 a.jpg=anchor b.jpg=", "1 from 2 c.jpg=0.38", "2: 2",
                                   "2 from 3 d.jpg=anchor e.jpg=0.38"));
    EXPECT_EQ(rows.rowOf(0), 1);
    EXPECT_EQ(rows.rowOf(2), 2);
    EXPECT_EQ(rows.rowOf(4), 4);
    EXPECT_EQ(rows.rowOf(5), -1);
    const auto third = [&] {
        return rows.index(2).data(SimilarRows::PhotosRole).toList().front().value<GroupPhoto>();
    };
    EXPECT_FALSE(third().selected);
    int changes = 0;
    QObject::connect(&rows, &QAbstractItemModel::dataChanged, [&] { ++changes; });
    model_->selection().toggle(named(2));
    EXPECT_TRUE(third().selected);
    EXPECT_EQ(changes, 1);
    model_->marking().mark({named(2)}, library::ReviewDecision::cleanup);
    settle();
    EXPECT_EQ(third().decision, model::Decision::Skip);
    EXPECT_GT(changes, 1);
    window_->state()->setQuery("d.");
    EXPECT_EQ(rows.groupCount(), 1);
    EXPECT_EQ(rows.index(0).data(SimilarRows::NumberRole), 2) << "a group keeps its number";
    window_->state()->setQuery("z");
    EXPECT_EQ(window_->page(), LibraryWindow::Empty);
}

} // namespace lumisort::review
