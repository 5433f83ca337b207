#include "ReviewWorld.h"

#include <QSignalSpy>
#include <set>

namespace lumisort::review {

using testing::IsEmpty;

namespace {

class WindowActionsTest : public ReviewWorld {
protected:
    /// The texts of the enabled actions, with their keys where they have some.
    std::set<std::string> enabled() {
        std::set<std::string> names;
        for (const auto& [id, command] : window_->actions()->all()) {
            EXPECT_EQ(command->isEnabled(), command->reason().isEmpty());
            if (command->isEnabled())
                names.insert(command->text().toStdString() +
                             (command->hint().isEmpty() ? "" : " " + command->hint().toStdString()));
        }
        return names;
    }
    void trigger(ActionSet::Id id) { window_->actions()->trigger(id); }
    ui::Command& action(ActionSet::Id id) { return *window_->actions()->of(id); }
    using Set = std::set<std::string>;
    static Set with(Set set, const Set& more) {
        set.insert(more.begin(), more.end());
        return set;
    }

    const Set always_{"Add Folder Ctrl+O", "Search Ctrl+F", "Settings Ctrl+,"};
    const Set available_ = with(always_, {"Import Ctrl+Shift+I", "Find Matches Ctrl+M"});
    const Set selected_ = with(available_, {"Import Ctrl+K", "Skip Ctrl+D", "Clear Mark Ctrl+U",
                                            "Clear Choice Ctrl+Shift+A", "Show Details Ctrl+I"});
};

} // namespace

TEST_F(WindowActionsTest, FollowWhatIsThereAndSelected) {
    open({});
    EXPECT_EQ(enabled(), always_);
    open({"a.jpg", "b.ARW", "c.jpg"});
    EXPECT_EQ(enabled(), available_);
    model_->selection().toggle(named(0));
    EXPECT_EQ(enabled(), selected_);
    EXPECT_EQ(action(ActionSet::Film).reason(), "Select a RAW photo for Film");
    model_->selection().toggle(named(1));
    const auto* exportFilm = "Export Film… Ctrl+Shift+E"; // of the RAW photos among them
    const auto* pasteFilm = "Paste Film Adjustments Ctrl+Shift+V";
    EXPECT_EQ(enabled(), with(selected_, {"Compare Ctrl+E", exportFilm, pasteFilm}));
    model_->selection().toggle(named(2));
    EXPECT_EQ(enabled(), with(selected_, {exportFilm, pasteFilm})) << "three are not two";
    trigger(ActionSet::ClearChoice);
    EXPECT_THAT(selectedNames(), IsEmpty());
    model_->selection().toggle(named(1));
    EXPECT_EQ(action(ActionSet::Film).reason(), "");
    QSignalSpy wanted(window_->state(), &WindowState::filmWanted);
    trigger(ActionSet::Film);
    EXPECT_EQ(wanted.size(), 1);
    QSignalSpy pasteWanted(window_->state(), &WindowState::filmPasteWanted);
    trigger(ActionSet::PasteFilm);
    ASSERT_EQ(pasteWanted.size(), 1);
    EXPECT_EQ(pasteWanted[0][0].value<std::vector<library::Photo>>(), std::vector{named(1)});
}

TEST_F(WindowActionsTest, MarkThePickedAndTakeItBack) {
    open({"a.jpg", "b.jpg", "c.jpg"});
    trigger(ActionSet::Keep); // nothing is selected: nothing happens
    model_->selection().toggle(named(0));
    model_->selection().toggle(named(1));
    trigger(ActionSet::Keep);
    settle();
    EXPECT_EQ(model_->library().keptCount(), 2);
    model_->selection().toggle(named(2));
    trigger(ActionSet::Skip);
    settle();
    EXPECT_EQ(model_->library().skipCount(), 3);
    EXPECT_FALSE(action(ActionSet::Organize).isEnabled()) << "every photo is skipped";
    trigger(ActionSet::Undo);
    settle();
    EXPECT_EQ(model_->library().keptCount(), 2);
    EXPECT_EQ(model_->library().skipCount(), 0);
    EXPECT_EQ(model_->library().decision(named(2)), std::nullopt);
    trigger(ActionSet::Undo);
    trigger(ActionSet::Redo);
    trigger(ActionSet::Redo);
    settle();
    EXPECT_EQ(model_->library().skipCount(), 3) << "keys faster than the disk";
    trigger(ActionSet::ClearMark);
    trigger(ActionSet::Undo);
    settle();
    EXPECT_EQ(model_->library().skipCount(), 3);
}

TEST_F(WindowActionsTest, WarnWhenAGroupIsLeftWithNothing) {
    open({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
    findGroups({{0, 1}, {2, 3}});
    struct Case {
        std::vector<std::size_t> skipped;
        const char* warning;
    };
    for (const auto& [skipped, warning] :
         {Case{{0}, ""}, Case{{2}, ""}, Case{{1}, "Every photo of group 1 is now skipped."}, Case{{2}, ""},
          Case{{3, 0}, "Every photo of groups 1, 2 is now skipped."}}) {
        for (const auto index : skipped) model_->selection().toggle(named(index));
        trigger(ActionSet::Skip);
        settle();
        trigger(ActionSet::ClearChoice);
        EXPECT_EQ(window_->marks()->warning(), warning);
    }
    trigger(ActionSet::Undo);
    EXPECT_EQ(window_->marks()->warning(), "");
}

TEST_F(WindowActionsTest, WaitWhileSomethingRuns) {
    open({"a.jpg", "b.jpg"});
    model_->selection().toggle(named(0));
    model_->matches().find();
    EXPECT_EQ(window_->page(), LibraryWindow::Scanning);
    EXPECT_EQ(enabled(), (Set{"Cancel", "Search Ctrl+F", "Settings Ctrl+,"}))
        << "a scan empties the selection";
    model_->selection().toggle(named(0));
    EXPECT_TRUE(action(ActionSet::Keep).isEnabled()) << "marking goes on meanwhile";
    window_->setMethod(0);
    EXPECT_EQ(model_->matches().method(), model::SimilarityMethod::visual);
    settle();
    EXPECT_EQ(window_->page(), LibraryWindow::NoMatches);

    model_->folderImport().importFolder(url("/q/"));
    EXPECT_FALSE(action(ActionSet::AddFolder).isEnabled());
    trigger(ActionSet::Stop);
    runOneJob();
    EXPECT_EQ(window_->status()->text(), "0 photos scanned · stopped");
    EXPECT_FALSE(action(ActionSet::Stop).isEnabled());
    settle();
}

} // namespace lumisort::review
