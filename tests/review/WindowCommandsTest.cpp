#include "ReviewWorld.h"

#include <set>

namespace lumisort::review {

using testing::IsEmpty;

namespace {

class WindowCommandsTest : public ReviewWorld {
protected:
    /// The texts of the enabled commands, with their keys where they have some.
    std::set<std::string> enabled() {
        std::set<std::string> names;
        auto list = window_->commands()->all();
        for (qsizetype i = 0; i < list.count(&list); ++i) {
            const auto* command = list.at(&list, i);
            EXPECT_EQ(command->isEnabled(), command->reason().isEmpty());
            if (command->isEnabled())
                names.insert(command->text().toStdString() +
                             (command->hint().isEmpty() ? "" : " " + command->hint().toStdString()));
        }
        return names;
    }
    using Set = std::set<std::string>;
    static Set with(Set set, const Set& more) {
        set.insert(more.begin(), more.end());
        return set;
    }

    const Set always_{"Add Folder Ctrl+O", "Search Ctrl+F"};
    const Set available_ = with(always_, {"Import Ctrl+Shift+I", "Find Matches Ctrl+M"});
    const Set selected_ = with(available_, {"Import Ctrl+K", "Skip Ctrl+D", "Clear Mark Ctrl+U",
                                            "Clear Choice Ctrl+Shift+A", "Show Details Ctrl+I"});
};

} // namespace

TEST_F(WindowCommandsTest, FollowWhatIsThereAndSelected) {
    open({});
    EXPECT_EQ(enabled(), always_);
    open({"a.jpg", "b.ARW", "c.jpg"});
    EXPECT_EQ(enabled(), available_);
    model_->select(named(0));
    EXPECT_EQ(enabled(), selected_);
    EXPECT_EQ(window_->commands()->film->reason(), "Select a RAW photo for Film");
    model_->select(named(1));
    EXPECT_EQ(enabled(), with(selected_, {"Compare Ctrl+E"}));
    model_->select(named(2));
    EXPECT_EQ(enabled(), selected_) << "three are not two";
    window_->commands()->clearChoice->trigger();
    EXPECT_THAT(selectedNames(), IsEmpty());
    model_->select(named(1));
    EXPECT_NE(window_->commands()->film->reason(), "Select a RAW photo for Film");
}

TEST_F(WindowCommandsTest, MarkThePickedAndTakeItBack) {
    open({"a.jpg", "b.jpg", "c.jpg"});
    window_->commands()->keep->trigger(); // nothing is selected: nothing happens
    model_->select(named(0));
    model_->select(named(1));
    window_->commands()->keep->trigger();
    settle();
    EXPECT_EQ(model_->importCount(), 2);
    model_->select(named(2));
    window_->commands()->skip->trigger();
    settle();
    EXPECT_EQ(model_->skipCount(), 3);
    EXPECT_FALSE(window_->commands()->organize->isEnabled()) << "every photo is skipped";
    window_->commands()->undo->trigger();
    settle();
    EXPECT_EQ(model_->importCount(), 2);
    EXPECT_EQ(model_->skipCount(), 0);
    EXPECT_EQ(window_->decision(QString::fromStdString(urlOf(2))), "");
    window_->commands()->undo->trigger();
    window_->commands()->redo->trigger();
    window_->commands()->redo->trigger();
    settle();
    EXPECT_EQ(model_->skipCount(), 3) << "keys faster than the disk";
    window_->commands()->clearMark->trigger();
    window_->commands()->undo->trigger();
    settle();
    EXPECT_EQ(model_->skipCount(), 3);
}

TEST_F(WindowCommandsTest, WarnWhenAGroupIsLeftWithNothing) {
    open({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
    findGroups({{0, 1}, {2, 3}});
    struct Case {
        std::vector<std::size_t> skipped;
        const char* warning;
    };
    for (const auto& [skipped, warning] :
         {Case{{0}, ""}, Case{{2}, ""}, Case{{1}, "Every photo of group 1 is now skipped."}, Case{{2}, ""},
          Case{{3, 0}, "Every photo of groups 1, 2 is now skipped."}}) {
        for (const auto index : skipped) model_->select(named(index));
        window_->commands()->skip->trigger();
        settle();
        window_->commands()->clearChoice->trigger();
        EXPECT_EQ(window_->marks()->warning(), warning);
    }
    window_->commands()->undo->trigger();
    EXPECT_EQ(window_->marks()->warning(), "");
}

TEST_F(WindowCommandsTest, WaitWhileSomethingRuns) {
    open({"a.jpg", "b.jpg"});
    model_->select(named(0));
    model_->findSimilar();
    EXPECT_EQ(window_->page(), "scanning");
    EXPECT_EQ(enabled(), (Set{"Cancel", "Search Ctrl+F"})) << "a scan empties the selection";
    model_->select(named(0));
    EXPECT_TRUE(window_->commands()->keep->isEnabled()) << "marking goes on meanwhile";
    window_->setMethod(0);
    EXPECT_EQ(model_->similarityMethod(), model::SimilarityMethod::visual);
    settle();
    EXPECT_EQ(window_->page(), "noMatches");

    model_->importFolder(url("/q/"));
    EXPECT_FALSE(window_->commands()->addFolder->isEnabled());
    window_->commands()->stop->trigger();
    runOneJob();
    EXPECT_EQ(model_->status(), "0 photos scanned · stopped");
    EXPECT_FALSE(window_->commands()->stop->isEnabled());
    settle();
}

} // namespace lumisort::review
