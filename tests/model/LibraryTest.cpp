#include "ModelWorld.h"

namespace lumisort::model {

using library::FolderState;
using library::Photo;
using library::ReviewDecision;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

class LibraryTest : public ModelWorld {
protected:
    static std::vector<std::string> names(const std::vector<Photo>& photos) {
        std::vector<std::string> all;
        for (const auto& photo : photos) all.emplace_back(photo.url.name());
        return all;
    }
};

} // namespace

TEST_F(LibraryTest, ImportsWhatIsNewAndSaysWhatItFound) {
    const auto model = this->model(libraryOf({"old.jpg"}));
    system_.write("/q/new.jpg", "x");
    auto changed = photo("/p/old.jpg");
    changed.width = 99;
    scanned_ = {{changed, photo("/q/new.jpg")}, 3};
    model->folderImport().importFolder(url("/q/"));
    EXPECT_THAT(reported(), ElementsAre("available 1 0", "scanning q"));
    model->folderImport().importFolder(url("/r/")); // busy: nothing
    model->removeFolder(url("/p/"));
    EXPECT_TRUE(model->prepareToOrganize().isCanceled());
    EXPECT_EQ(jobs_.size(), 1u);
    runOneJob();
    EXPECT_THAT(reported(), ElementsAre("imported 2 3"));
    EXPECT_THAT(names(model->library().photos()), ElementsAre("old.jpg", "new.jpg"));
    EXPECT_EQ(model->library().photos()[0].width, 0); // a known photo keeps its record
    settle();
    EXPECT_THAT(model->library().folders(), ElementsAre(url("/p/"), url("/q/")));
    EXPECT_THAT(reported(), ElementsAre("available 2 0"));

    scanned_ = {std::vector<Photo>(120, photo("/q/new.jpg")), 0};
    model->folderImport().importFolder(url("/q/"));
    runOneJob();
    EXPECT_THAT(reported(), ElementsAre("scanning q", "found 100", "imported 120 0"));
    EXPECT_EQ(model->library().photos().size(), 2u);
    EXPECT_EQ(model->library().folders().size(), 2u);
}

TEST_F(LibraryTest, AStoppedScanAddsWhatItFoundAndDropsFoldersThatWait) {
    for (const auto* folder : {"/q", "/r"}) system_.makeFolder(folder);
    system_.write("/q/new.jpg", "x");
    auto deps = dependencies();
    deps.scan = [](const auto&, const auto& progress, const auto& stop) {
        EXPECT_TRUE(stop.stop_requested());
        progress(100);
        return library::FolderScan{{photo("/q/new.jpg")}, 2};
    };
    LibraryModel model(document_, library::LibraryContents{}, deps);
    settle();
    hear(model);
    model.folderImport().importFolders({url("/q"), url("/r")});
    runOneJob(); // are they folders?
    EXPECT_TRUE(model.folderImport().running());
    model.folderImport().stop();
    runOneJob();
    EXPECT_FALSE(model.folderImport().running());
    EXPECT_THAT(reported(), ElementsAre("scanning q", "stopping", "imported 1 2 stopped"));
    settle();
    EXPECT_THAT(model.library().folders(), ElementsAre(url("/q/")));
    EXPECT_EQ(model.library().availableCount(), 1);
    EXPECT_FALSE(model.task().busy());
}

TEST_F(LibraryTest, RemovingAFolderKeepsWhatAnotherHolds) {
    auto session = libraryOf({"a.jpg", "B/b.jpg"});
    session.folders.push_back(url("/p/B/"));
    const auto model = this->model(session);
    model->marking().mark(session.photos, ReviewDecision::keep);
    settle();
    model->selection().toggle(session.photos[1]);
    model->removeFolder(url("/p/"));
    EXPECT_EQ(reported().back(), "removed");
    EXPECT_THAT(names(model->library().photos()), ElementsAre("b.jpg"));
    EXPECT_EQ(model->library().reviewMarks().size(), 1u);
    EXPECT_THAT(model->selection().selected(), IsEmpty());
    EXPECT_FALSE(model->selection().focused());
    EXPECT_EQ(system_.contents("/p/a.jpg"), "a.jpg");
}

TEST_F(LibraryTest, FollowsADriveThatComesAndGoes) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->marking().mark({session.photos[0]}, ReviewDecision::keep);
    settle();
    model->selection().toggle(session.photos[0]);
    model->selection().toggle(session.photos[1]);

    system_.replace("/p", "/unplugged");
    model->availability().refresh();
    settle();
    EXPECT_EQ(model->library().folderState(url("/p/")), FolderState::offline);
    EXPECT_EQ(reported().back(), "available 0 2");
    EXPECT_THAT(model->selection().selected(), IsEmpty());
    EXPECT_EQ(model->library().keptCount(), 0);
    model->selection().toggle(session.photos[0]); // not readable: ignored
    EXPECT_THAT(model->selection().selected(), IsEmpty());

    system_.replace("/unplugged", "/p");
    model->availability().refresh();
    settle();
    EXPECT_THAT(reported(), ElementsAre("available 2 0"));
    EXPECT_EQ(model->library().keptCount(), 1); // the mark's stamp still fits
}

TEST_F(LibraryTest, RequestsDuringAnInspectionCostOneMore) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    model->availability().refresh();
    ASSERT_EQ(jobs_.size(), 1u);
    for (int i = 0; i < 10; ++i) model->availability().refresh();
    EXPECT_EQ(jobs_.size(), 1u);
    runOneJob();
    EXPECT_EQ(jobs_.size(), 1u);
    int changes = 0;
    QObject::connect(&model->reports(), &Reports::added, [&] { ++changes; });
    QObject::connect(&model->library(), &Library::countsChanged, [&] { ++changes; });
    QObject::connect(&model->library(), &Library::availabilityChanged, [&] { ++changes; });
    runOneJob();
    EXPECT_TRUE(jobs_.empty());
    EXPECT_EQ(changes, 0); // nothing is different: nobody hears of it
}

TEST_F(LibraryTest, AnInspectionOfALibraryThatIsNoMoreIsDropped) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->availability().refresh();
    model->removeFolder(url("/p/"));
    runOneJob(); // the old library's answer
    EXPECT_EQ(model->library().availableCount(), 0);
    settle();
    EXPECT_TRUE(model->availability().refreshing().isFinished());
}

TEST_F(LibraryTest, MarksInOrderAndOnlyWhatIsThere) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->marking().mark(session.photos, ReviewDecision::keep);
    model->marking().mark({session.photos[0]}, std::nullopt);
    settle();
    EXPECT_EQ(reported().back(), "marked 1 0");
    EXPECT_FALSE(model->library().decision(session.photos[0]));
    EXPECT_EQ(model->library().decision(session.photos[1]), ReviewDecision::keep);

    system_.remove("/p/a.jpg");
    model->marking().mark({session.photos[0], session.photos[1], photo("/elsewhere.jpg")},
                          ReviewDecision::cleanup);
    settle();
    EXPECT_EQ(reported().back(), "marked 1 2");
    EXPECT_EQ(model->library().skipCount(), 1);
    EXPECT_EQ(model->library().keptCount(), 0);
}

TEST_F(LibraryTest, AMarkGoesStaleWithItsFile) {
    const auto session = libraryOf({"a.jpg"});
    const auto model = this->model(session);
    model->marking().mark(session.photos, ReviewDecision::keep);
    settle();
    system_.write("/p/a.jpg", "edited");
    model->availability().refresh();
    settle();
    EXPECT_FALSE(model->library().decision(session.photos[0]));
    EXPECT_EQ(model->library().keptCount(), 0);
    EXPECT_EQ(model->library().reviewMarks().size(), 1u); // kept, in case the file comes back
    model->marking().mark(session.photos, ReviewDecision::keep);
    settle();
    EXPECT_EQ(model->library().keptCount(), 1);
}

TEST_F(LibraryTest, PreparesToOrganizeWhatIsNotForCleanup) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->marking().mark({session.photos[0]},
                          ReviewDecision::cleanup); // still under way when the next begins
    auto prepared = model->prepareToOrganize();
    EXPECT_TRUE(model->task().busy());
    settle();
    EXPECT_FALSE(model->task().busy());
    EXPECT_THAT(names(prepared.result()), ElementsAre("b.jpg"));

    model->marking().mark(session.photos, ReviewDecision::cleanup);
    prepared = model->prepareToOrganize();
    settle();
    EXPECT_THAT(prepared.result(), IsEmpty());
}

TEST_F(LibraryTest, ARenameTakesEverythingAlong) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->marking().mark({session.photos[0]}, ReviewDecision::keep);
    settle();
    model->selection().toggle(session.photos[0]);
    model->rename(session.photos[0], " holiday ");
    EXPECT_EQ(reported().back(), "renamed holiday.jpg");
    EXPECT_THAT(names(model->library().photos()), ElementsAre("holiday.jpg", "b.jpg"));
    EXPECT_EQ(model->library().keptCount(), 1);
    EXPECT_EQ(model->library().decision(photo("/p/holiday.jpg")), ReviewDecision::keep);
    EXPECT_THAT(model->selection().selected(), UnorderedElementsAre(url("/p/holiday.jpg")));
    EXPECT_EQ(model->selection().focused(), url("/p/holiday.jpg"));
    settle();
    EXPECT_EQ(model->library().keptCount(), 1);

    EXPECT_EQ(model->rename(session.photos[0], "x").error(), "Please wait for the current task to finish.");
    EXPECT_EQ(model->rename(session.photos[1], "holiday").error(), "A file with this name already exists.");
    EXPECT_THAT(names(model->library().photos()), ElementsAre("holiday.jpg", "b.jpg"));
}

TEST_F(LibraryTest, OffersADriveOnceWhileItIsThere) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    const auto card = url("/media/card/");
    volumes_ = {{.url = card, .external = true}};
    model->drives().update();
    EXPECT_THAT(model->drives().pending(), ElementsAre(card));
    EXPECT_TRUE(model->drives().accept(card));
    EXPECT_THAT(model->drives().pending(), IsEmpty());
    volumes_.clear();
    EXPECT_FALSE(model->drives().accept(card)) << "ejected meanwhile";
    EXPECT_THAT(model->drives().connected(), IsEmpty());
}

TEST_F(LibraryTest, SelectionAndFocus) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    auto& selection = model->selection();
    selection.toggle(session.photos[1]);
    selection.toggle(session.photos[0]);
    EXPECT_EQ(selection.detailPhoto(), session.photos[0]);
    selection.toggle(session.photos[0]); // away again, but focused
    EXPECT_EQ(selection.focused(), session.photos[0].url);
    ASSERT_TRUE(model->rename(session.photos[0], "z"));
    EXPECT_EQ(selection.detailPhoto(), photo("/p/z.jpg")) << "the focus follows a photo that is not selected";
    EXPECT_FALSE(selection.add(photo("/p/missing.jpg")));
    selection.toggle(session.photos[1]);
    EXPECT_FALSE(selection.focused());
    EXPECT_FALSE(selection.detailPhoto());
}

TEST_F(LibraryTest, ARenameReplacesWhatAFileLeftBehindUnderTheNewName) {
    const auto session = libraryOf({"a.jpg", "b.jpg", "c.jpg"});
    const auto model = this->model(session);
    model->marking().mark({session.photos[0], session.photos[1]}, ReviewDecision::cleanup);
    settle();
    system_.remove("/p/a.jpg"); // its record and its mark stay
    model->availability().refresh();
    settle();
    const int shown = model->library().thumbnailRevision();
    ASSERT_TRUE(model->rename(session.photos[2], "a"));
    EXPECT_GT(model->library().thumbnailRevision(), shown) << "the preview of the file that is gone";
    settle();
    EXPECT_THAT(names(model->library().photos()), ElementsAre("b.jpg", "a.jpg"));
    EXPECT_EQ(model->library().availableCount(), 2);
    EXPECT_EQ(model->library().reviewMarks().count("/p/a.jpg"), 0u) << "the mark of the file that is gone";
    const auto prepared = model->prepareToOrganize();
    settle();
    EXPECT_THAT(names(prepared.result()), ElementsAre("a.jpg"));
}

TEST_F(LibraryTest, MarksFollowAPhotoThatIsRenamedMeanwhile) {
    const auto session = libraryOf({"a.jpg"});
    const auto model = this->model(session);
    const auto before = std::make_shared<StoredMarks>();
    model->marking().mark(session.photos, ReviewDecision::keep, before);
    ASSERT_TRUE(model->rename(session.photos[0], "z"));
    settle();
    EXPECT_EQ(model->library().keptCount(), 1);
    ASSERT_EQ(before->size(), 1u);
    EXPECT_EQ(before->front().photo, url("/p/z.jpg"));
}

TEST_F(LibraryTest, RestoresMarksAsTheyWereStaleOnesToo) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->marking().mark({session.photos[0]}, ReviewDecision::cleanup);
    settle();
    system_.write("/p/a.jpg", "edited");
    model->availability().refresh();
    settle();
    const auto marks = model->library().reviewMarks();
    const auto before = std::make_shared<StoredMarks>();
    model->marking().mark({session.photos[0], session.photos[1], session.photos[0]}, ReviewDecision::keep,
                          before);
    model->marking().restore(before); // asked for before the marks are set
    settle();
    EXPECT_EQ(model->library().reviewMarks(), marks);
    EXPECT_EQ(model->library().keptCount(), 0);
}

TEST_F(LibraryTest, MarkingNothingChangesNothing) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    reported();
    EXPECT_TRUE(model->marking().mark({}, ReviewDecision::keep).isFinished());
    model->matches().stop();
    model->folderImport().stop();
    EXPECT_THAT(reported(), IsEmpty());
    EXPECT_TRUE(timers_.empty()) << "a save was asked for";
}

TEST_F(LibraryTest, OrganizingWaitsForTheFirstLookThatBeginsAfterwards) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->availability().refresh(); // a look that began before
    system_.remove("/p/a.jpg");
    const auto prepared = model->prepareToOrganize();
    runOneJob();
    EXPECT_FALSE(prepared.isFinished());
    const auto tick = model->availability().refresh(); // as happens every 30 seconds
    runOneJob();
    ASSERT_TRUE(prepared.isFinished()) << "waits for every look that anyone asks for";
    EXPECT_THAT(names(prepared.result()), ElementsAre("b.jpg"));
    EXPECT_FALSE(tick.isFinished());
    settle();
    EXPECT_TRUE(tick.isFinished());
}

TEST_F(LibraryTest, NothingIsUnavailableBeforeItWasLookedAt) {
    LibraryModel model(document_, libraryOf({"a.jpg"}), dependencies());
    EXPECT_EQ(model.library().unavailableCount(), 0);
    EXPECT_FALSE(model.library().isLookedAt());
    system_.remove("/p/a.jpg");
    settle();
    EXPECT_EQ(model.library().unavailableCount(), 1);
    EXPECT_TRUE(model.library().isLookedAt());
    system_.write("/q/new.jpg", "x");
    scanned_ = {{photo("/q/new.jpg")}, 0};
    model.folderImport().importFolder(url("/q/"));
    runOneJob();
    EXPECT_EQ(model.library().unavailableCount(), 1) << "the new photo is being looked at";
    settle();
    EXPECT_EQ(model.library().unavailableCount(), 1);
}

} // namespace lumisort::model
