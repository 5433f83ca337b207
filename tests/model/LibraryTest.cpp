#include "ModelWorld.h"
#include "library/RenamePhoto.h"

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
    model->importFolder(url("/q/"));
    EXPECT_EQ(model->status(), "Scanning q…");
    model->importFolder(url("/r/")); // busy: nothing
    model->removeFolder(url("/p/"));
    model->beginOrganize();
    EXPECT_EQ(jobs_.size(), 1u);
    runOneJob();
    EXPECT_EQ(model->status(), "2 photos scanned · 3 unreadable");
    EXPECT_THAT(names(model->photos()), ElementsAre("old.jpg", "new.jpg"));
    EXPECT_EQ(model->photos()[0].width, 0); // a known photo keeps its record
    settle();
    EXPECT_THAT(model->folders(), ElementsAre(url("/p/"), url("/q/")));
    EXPECT_EQ(model->status(), "2 available · 0 unavailable");

    scanned_ = {std::vector<Photo>(120, photo("/q/new.jpg")), 0};
    model->importFolder(url("/q/"));
    runOneJob();
    EXPECT_EQ(model->status(), "120 photos scanned");
    EXPECT_EQ(model->photos().size(), 2u);
    EXPECT_EQ(model->folders().size(), 2u);
}

TEST_F(LibraryTest, AStoppedScanAddsWhatItFoundAndDropsFoldersThatWait) {
    for (const auto* folder : {"/q", "/r"}) system_.makeFolder(folder);
    system_.write("/q/new.jpg", "x");
    auto with = surroundings();
    with.scan = [](const auto&, const auto& progress, const auto& stop) {
        EXPECT_TRUE(stop.stop_requested());
        progress(100);
        return library::FolderScan{{photo("/q/new.jpg")}, 2};
    };
    LibraryModel model(document_, library::LibraryContents{}, with);
    settle();
    std::vector<QString> said;
    QObject::connect(&model, &LibraryModel::statusChanged, [&] { said.push_back(model.status()); });
    model.importFolders({url("/q"), url("/r")});
    runOneJob(); // are they folders?
    EXPECT_TRUE(model.importRunning());
    model.stopImport();
    runOneJob();
    EXPECT_FALSE(model.importRunning());
    EXPECT_THAT(said, ElementsAre("Scanning q…", "Stopping…", "1 photos scanned · 2 unreadable · stopped"));
    settle();
    EXPECT_THAT(model.folders(), ElementsAre(url("/q/")));
    EXPECT_EQ(model.availableCount(), 1);
    EXPECT_FALSE(model.busy());
}

TEST_F(LibraryTest, RemovingAFolderKeepsWhatAnotherHolds) {
    auto session = libraryOf({"a.jpg", "B/b.jpg"});
    session.folders.push_back(url("/p/B/"));
    const auto model = this->model(session);
    model->mark(session.photos, ReviewDecision::keep);
    settle();
    model->select(session.photos[1]);
    model->showFolder(url("/p/"));
    model->removeFolder(url("/p/"));
    EXPECT_EQ(model->status(), "Removed from library · Files unchanged");
    EXPECT_THAT(names(model->photos()), ElementsAre("b.jpg"));
    EXPECT_EQ(model->reviewMarks().size(), 1u);
    EXPECT_EQ(model->section(), "library");
    EXPECT_THAT(model->selected(), IsEmpty());
    EXPECT_FALSE(model->focusedPhotoURL());
    EXPECT_EQ(system_.contents("/p/a.jpg"), "a.jpg");
}

TEST_F(LibraryTest, FollowsADriveThatComesAndGoes) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->mark({session.photos[0]}, ReviewDecision::keep);
    settle();
    model->select(session.photos[0]);
    model->select(session.photos[1]);
    model->setCompare(true);
    const auto contents = *system_.contents("/p/a.jpg");

    system_.replace("/p", "/unplugged");
    model->refreshAvailability();
    settle();
    EXPECT_EQ(model->folderState(url("/p/")), FolderState::offline);
    EXPECT_EQ(model->status(), "0 available · 2 unavailable");
    EXPECT_THAT(model->selected(), IsEmpty());
    EXPECT_FALSE(model->compare());
    EXPECT_EQ(model->importCount(), 0);
    model->setSection("offline");
    EXPECT_EQ(model->visible().size(), 2u);
    model->select(session.photos[0]); // not readable: ignored
    EXPECT_THAT(model->selected(), IsEmpty());

    system_.replace("/unplugged", "/p");
    model->refreshAvailability();
    settle();
    EXPECT_EQ(model->status(), "2 available · 0 unavailable");
    EXPECT_EQ(model->importCount(), 1); // the mark's stamp still fits
}

TEST_F(LibraryTest, RequestsDuringAnInspectionCostOneMore) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    model->refreshAvailability();
    ASSERT_EQ(jobs_.size(), 1u);
    for (int i = 0; i < 10; ++i) model->refreshAvailability();
    EXPECT_EQ(jobs_.size(), 1u);
    runOneJob();
    EXPECT_EQ(jobs_.size(), 1u);
    int changes = 0;
    QObject::connect(model.get(), &LibraryModel::statusChanged, [&] { ++changes; });
    QObject::connect(model.get(), &LibraryModel::countsChanged, [&] { ++changes; });
    QObject::connect(&model->visiblePhotos(), &QAbstractItemModel::dataChanged, [&] { ++changes; });
    runOneJob();
    EXPECT_TRUE(jobs_.empty());
    EXPECT_EQ(changes, 0); // nothing is different: nobody hears of it
}

TEST_F(LibraryTest, AnInspectionOfALibraryThatIsNoMoreIsDropped) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->refreshAvailability();
    model->removeFolder(url("/p/"));
    runOneJob(); // the old library's answer
    EXPECT_EQ(model->availableCount(), 0);
    settle();
    EXPECT_TRUE(model->refreshing().isFinished());
}

TEST_F(LibraryTest, MarksInOrderAndOnlyWhatIsThere) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->mark(session.photos, ReviewDecision::keep);
    model->mark({session.photos[0]}, std::nullopt);
    settle();
    EXPECT_EQ(model->status(), "1 marked");
    EXPECT_FALSE(model->decision(session.photos[0]));
    EXPECT_EQ(model->decision(session.photos[1]), ReviewDecision::keep);

    system_.remove("/p/a.jpg");
    model->mark({session.photos[0], session.photos[1], photo("/elsewhere.jpg")}, ReviewDecision::cleanup);
    settle();
    EXPECT_EQ(model->status(), "1 marked · 2 unavailable");
    EXPECT_EQ(model->skipCount(), 1);
    EXPECT_EQ(model->importCount(), 0);
}

TEST_F(LibraryTest, AMarkGoesStaleWithItsFile) {
    const auto session = libraryOf({"a.jpg"});
    const auto model = this->model(session);
    model->setSection("keep");
    model->mark(session.photos, ReviewDecision::keep);
    settle();
    EXPECT_EQ(model->visible().size(), 1u);
    system_.write("/p/a.jpg", "edited");
    model->refreshAvailability();
    settle();
    EXPECT_FALSE(model->decision(session.photos[0]));
    EXPECT_EQ(model->importCount(), 0);
    EXPECT_THAT(model->visible(), IsEmpty());
    EXPECT_EQ(model->reviewMarks().size(), 1u); // kept, in case the file comes back
    model->mark(session.photos, ReviewDecision::keep);
    settle();
    EXPECT_EQ(model->importCount(), 1);
}

TEST_F(LibraryTest, PreparesToOrganizeWhatIsNotForCleanup) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->mark({session.photos[0]}, ReviewDecision::cleanup); // still under way when the next begins
    model->beginOrganize();
    EXPECT_TRUE(model->busy());
    settle();
    EXPECT_FALSE(model->busy());
    EXPECT_TRUE(model->organize());
    EXPECT_THAT(names(model->importPhotos()), ElementsAre("b.jpg"));

    model->setOrganize(false);
    model->mark(session.photos, ReviewDecision::cleanup);
    model->beginOrganize();
    settle();
    EXPECT_FALSE(model->organize());
}

TEST_F(LibraryTest, ARenameTakesEverythingAlong) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    model->mark({session.photos[0]}, ReviewDecision::keep);
    settle();
    model->select(session.photos[0]);
    model->rename(session.photos[0], " holiday ");
    EXPECT_EQ(model->status(), "Renamed to holiday.jpg");
    EXPECT_THAT(names(model->photos()), ElementsAre("holiday.jpg", "b.jpg"));
    EXPECT_EQ(model->importCount(), 1);
    EXPECT_EQ(model->decision(photo("/p/holiday.jpg")), ReviewDecision::keep);
    EXPECT_THAT(model->selected(), UnorderedElementsAre(url("/p/holiday.jpg")));
    EXPECT_EQ(model->focusedPhotoURL(), url("/p/holiday.jpg"));
    settle();
    EXPECT_EQ(model->importCount(), 1);

    EXPECT_THROW(model->rename(session.photos[0], "x"), library::RenameError); // that URL is no more
    EXPECT_THROW(model->rename(session.photos[1], "holiday"), library::RenameError);
    EXPECT_THAT(names(model->photos()), ElementsAre("holiday.jpg", "b.jpg"));
}

TEST_F(LibraryTest, OffersADriveOnceAndOpensTheChooserThere) {
    const auto model = this->model(libraryOf({"a.jpg"}));
    const auto card = url("/media/card/");
    volumes_ = {{.url = card, .external = true}};
    model->updateDevices();
    EXPECT_THAT(model->devices().pending, ElementsAre(card));
    std::vector<std::optional<files::FileUrl>> asked;
    QObject::connect(model.get(), &LibraryModel::folderWanted, [&](const auto& at) { asked.push_back(at); });
    model->browseDevice(card);
    EXPECT_THAT(asked, ElementsAre(card));
    EXPECT_THAT(model->devices().pending, IsEmpty());
    volumes_.clear();
    model->browseDevice(card); // ejected meanwhile
    EXPECT_EQ(asked.size(), 1u);
    EXPECT_THAT(model->devices().connected, IsEmpty());
}

TEST_F(LibraryTest, SelectionFocusAndDetails) {
    const auto session = libraryOf({"a.jpg", "b.jpg"});
    const auto model = this->model(session);
    int wanted = 0;
    QObject::connect(model.get(), &LibraryModel::detailsWanted, [&] { ++wanted; });
    model->showDetails();
    EXPECT_EQ(wanted, 0);
    model->select(session.photos[1]);
    model->select(session.photos[0]);
    EXPECT_EQ(model->detailPhoto(), session.photos[0]);
    model->select(session.photos[0]); // away again, but focused
    EXPECT_EQ(model->focusedPhotoURL(), session.photos[0].url);
    model->showDetails(photo("/p/missing.jpg"));
    EXPECT_EQ(wanted, 0);
    model->showDetails();
    EXPECT_EQ(wanted, 1);
    model->select(session.photos[1]);
    EXPECT_FALSE(model->focusedPhotoURL());
    EXPECT_FALSE(model->detailPhoto());
}

} // namespace lumisort::model
