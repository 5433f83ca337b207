#include "review/viewer/CompareState.h"
#include "review/viewer/FullscreenPhotoState.h"
#include "review/viewer/ViewerWorld.h"

#include <gmock/gmock.h>

namespace lumisort::review {
namespace {

using testing::ElementsAre;

namespace Decision = model::Decision;

TEST(PhotoPairs, GoFromTheAnchorOnward) {
    EXPECT_EQ(pairCount(1), 0);
    for (std::int64_t count : {2, 3, 7}) {
        std::int64_t index = 0;
        for (std::int64_t first = 0; first < count; ++first)
            for (std::int64_t second = first + 1; second < count; ++second, ++index) {
                const PhotoPair pair{first, second};
                EXPECT_EQ(pairIndex(count, pair), index);
                EXPECT_EQ(pairAt(count, index), pair);
            }
        EXPECT_EQ(index, pairCount(count));
        EXPECT_EQ(pairAt(count, index), std::nullopt);
        EXPECT_EQ(pairAt(count, -1), std::nullopt);
    }
}

TEST(ShownPhoto, SaysNameSizeAndBytes) {
    struct Case {
        const char *path, *name, *details;
        std::int64_t bytes, width, height;
    };
    for (const auto& [path, name, details, bytes, width, height] :
         {Case{"/p/a.jpg", "a.jpg", "6000 × 4000 · 12.3 MB", 12'345'678, 6000, 4000},
          Case{"/p/no size.jpg", "no size.jpg", "1.0 MB", 1'000'000, 0, 0},
          Case{"/p/\xff.jpg", "\uFFFD.jpg", "3 × 2 · 512 bytes", 512, 3, 2}}) {
        const auto shown = ShownPhoto::of(
            {.url = files::FileUrl::fromPath(path), .bytes = bytes, .width = width, .height = height});
        EXPECT_EQ(shown.name.toStdString(), name);
        EXPECT_EQ(shown.details.toStdString(), details);
        EXPECT_EQ(files::FileUrl::fromString(shown.url.toStdString())->path(), path);
    }
}

class CompareStateTest : public ViewerWorld {
protected:
    CompareStateTest() {
        open({"a.jpg", "b.jpg", "c.jpg"});
        state_ = std::make_unique<CompareState>(*model_, *history_);
    }

    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& photo : state_->photos())
            names.push_back(photo.value<ShownPhoto>().name.toStdString());
        return names;
    }

    std::unique_ptr<CompareState> state_;
};

TEST_F(CompareStateTest, OpensWithTwoOrMoreAndForgetsTheView) {
    state_->open(photos({0}));
    EXPECT_FALSE(state_->isOpened());
    state_->open(photos({0, 1}));
    EXPECT_TRUE(state_->isOpened());
    EXPECT_EQ(state_->active(), 0);
    state_->view()->setZoom(4);
    state_->close();
    state_->open(photos({1, 2}));
    EXPECT_EQ(state_->view()->zoom(), 1);
    EXPECT_THAT(names(), ElementsAre("b.jpg", "c.jpg"));
}

TEST_F(CompareStateTest, MarksTheActivePhotoAndShowsWhatHolds) {
    auto& actions = *state_->actions();
    actions.trigger(ActionSet::Keep); // nothing is open
    state_->open(photos({0, 1}));
    actions.trigger(ActionSet::Keep);
    settle();
    EXPECT_EQ(state_->decisions(), QList<int>({Decision::Keep, Decision::None}));
    state_->setActive(1);
    actions.trigger(ActionSet::Skip);
    settle();
    EXPECT_EQ(state_->decisions(), QList<int>({Decision::Keep, Decision::Skip}));
    actions.trigger(ActionSet::ClearMark);
    settle();
    EXPECT_EQ(state_->decisions().at(1), Decision::None);
    history_->undo();
    settle();
    EXPECT_EQ(state_->decisions().at(1), Decision::Skip);
}

TEST_F(CompareStateTest, FollowsARenameAndUndoesUnderTheNewName) {
    history_->mark(photos({0}), library::ReviewDecision::cleanup);
    settle();
    system_.write("/p/a.jpg", "edited since");
    model_->availability().refresh();
    settle();
    const auto marks = model_->library().reviewMarks(); // a stale one
    state_->open(photos({0, 1}));
    history_->mark(photos({0}), library::ReviewDecision::keep);
    settle();
    ASSERT_TRUE(model_->rename(session_.photos[0], "z"));
    settle();
    EXPECT_THAT(names(), ElementsAre("z.jpg", "b.jpg"));
    history_->undo();
    settle();
    EXPECT_EQ(model_->library().decision(photo("/p/z.jpg")), std::nullopt);
    EXPECT_EQ(model_->library().reviewMarks().at("/p/z.jpg"), marks.at("/p/a.jpg"));
    history_->redo();
    settle();
    EXPECT_EQ(model_->library().decision(photo("/p/z.jpg")), library::ReviewDecision::keep);
}

TEST_F(CompareStateTest, MovesAroundAndFlipsToTheNeighbour) {
    state_->open(photos({0, 1, 2}));
    state_->moveActive(-1);
    EXPECT_EQ(state_->active(), 2);
    EXPECT_EQ(state_->shownIn(2), 2);
    state_->setFlipped(true);
    EXPECT_EQ(state_->shownIn(2), 0);
    EXPECT_EQ(state_->shownIn(1), 1);
    state_->moveActive(1); // the other pane starts with its own
    EXPECT_FALSE(state_->isFlipped());
    EXPECT_EQ(state_->active(), 0);
}

TEST_F(CompareStateTest, StepsThroughThePairsOfItsGroup) {
    state_->open(photos({2, 0}), photos({0, 1, 2}));
    EXPECT_THAT(names(), ElementsAre("c.jpg", "a.jpg")); // as they were picked
    EXPECT_EQ(state_->pair(), 2);
    EXPECT_EQ(state_->pairCount(), 3);
    state_->view()->setZoom(4);
    state_->movePair(1);
    EXPECT_THAT(names(), ElementsAre("b.jpg", "c.jpg"));
    EXPECT_EQ(state_->view()->zoom(), 4); // the next pair is looked at as closely
    state_->movePair(1);
    EXPECT_EQ(state_->pair(), 3);
    state_->movePair(-1);
    state_->movePair(-1);
    EXPECT_THAT(names(), ElementsAre("a.jpg", "b.jpg"));

    state_->open(photos({0, 1}), photos({1, 2})); // not both of the group
    EXPECT_EQ(state_->pairCount(), 0);
    state_->movePair(1);
    EXPECT_THAT(names(), ElementsAre("a.jpg", "b.jpg"));
}

class FullscreenPhotoStateTest : public ViewerWorld {
protected:
    FullscreenPhotoStateTest() { open({"a.jpg", "b.jpg", "c.jpg"}); }
};

TEST_F(FullscreenPhotoStateTest, KeysZoomStepAndClose) {
    using Keys = std::vector<int>;
    struct Case {
        const char* what;
        int start;
        Keys keys;
        int index;
        double zoom;
    };
    for (const auto& [what, start, keys, index, zoom] : {
             Case{"four times closer", 1, Keys(4, Qt::Key_Equal), 1, 2.44140625},
             Case{"with the keypad", 1, {Qt::Key_Plus, Qt::Key_Plus, Qt::Key_Minus}, 1, 1.25},
             Case{"not below one", 1, {Qt::Key_Minus}, 1, 1},
             Case{"not above twelve", 1, Keys(20, Qt::Key_Plus), 1, 12},
             Case{"back at once", 1, {Qt::Key_Plus, Qt::Key_Plus, Qt::Key_0}, 1, 1},
             Case{"a step shows all of the next", 0, {Qt::Key_Plus, Qt::Key_Right}, 1, 1},
             Case{"nothing beyond the last", 2, {Qt::Key_Plus, Qt::Key_Right}, 2, 1.25},
             Case{"nothing before the first", 1, {Qt::Key_Left, Qt::Key_Plus, Qt::Key_Left}, 0, 1.25},
         }) {
        SCOPED_TRACE(what);
        FullscreenPhotoState state(*model_, *history_, session_.photos, start);
        for (const int key : keys) EXPECT_TRUE(state.actions()->press(key, Qt::NoModifier));
        EXPECT_EQ(state.index(), index);
        EXPECT_DOUBLE_EQ(state.view()->zoom(), zoom);
    }
    FullscreenPhotoState state(*model_, *history_, session_.photos, 0);
    int closed = 0;
    QObject::connect(&state, &FullscreenPhotoState::closeWanted, [&] { ++closed; });
    EXPECT_TRUE(state.actions()->press(Qt::Key_Escape, Qt::NoModifier));
    EXPECT_EQ(closed, 1);
    EXPECT_FALSE(state.actions()->press(Qt::Key_A, Qt::NoModifier));
    EXPECT_FALSE(state.actions()->press(Qt::Key_0, Qt::ControlModifier));
}

TEST_F(FullscreenPhotoStateTest, MarksThePhotoOnShow) {
    FullscreenPhotoState state(*model_, *history_, session_.photos, 1);
    EXPECT_TRUE(state.actions()->press(Qt::Key_D, Qt::ControlModifier));
    settle();
    EXPECT_EQ(state.decision(), Decision::Skip);
    EXPECT_TRUE(state.actions()->press(Qt::Key_Z, Qt::ControlModifier));
    settle();
    EXPECT_EQ(state.decision(), Decision::None);
    EXPECT_TRUE(state.actions()->press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier));
    settle();
    EXPECT_EQ(state.decision(), Decision::Skip);
    state.move(1);
    EXPECT_EQ(state.decision(), Decision::None);
    state.actions()->press(Qt::Key_K, Qt::ControlModifier);
    state.actions()->press(Qt::Key_U, Qt::ControlModifier);
    settle();
    EXPECT_EQ(state.decision(), Decision::None);
    EXPECT_EQ(model_->library().skipCount(), 1);
}

} // namespace
} // namespace lumisort::review
