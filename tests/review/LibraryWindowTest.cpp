#include "ReviewWorld.h"
#include "review/StatusText.h"

namespace lumisort::review {

using testing::ElementsAre;
using testing::SizeIs;

namespace {

class LibraryWindowTest : public ReviewWorld {};

} // namespace

TEST_F(LibraryWindowTest, ShowsThePageThatTheLibraryCallsFor) {
    open({});
    EXPECT_EQ(window_->page(), LibraryWindow::Welcome);
    open({"a.jpg", "b.jpg"});
    struct Case {
        WindowState::ShownSection section;
        const char* query;
        LibraryWindow::Page page;
        const char *title, *text;
    };
    for (const auto& [section, query, page, title, text] :
         {Case{WindowState::Library, "", LibraryWindow::Photos, "All Photos", ""},
          Case{WindowState::Library, "zz", LibraryWindow::Empty, "All Photos", "No matching photos"},
          Case{WindowState::Keep, "", LibraryWindow::Empty, "Import", "No matching photos"},
          Case{WindowState::Cleanup, "", LibraryWindow::Empty, "Skip", "No matching photos"},
          Case{WindowState::Offline, "", LibraryWindow::Empty, "Unavailable", "No matching photos"},
          Case{WindowState::Similar, "", LibraryWindow::FindMatches, "Similar Photos", ""}}) {
        window_->showSection(section);
        window_->state()->setQuery(QString::fromUtf8(query));
        EXPECT_EQ(window_->page(), page) << section;
        EXPECT_EQ(window_->title(), title);
        if (page == LibraryWindow::Empty) {
            EXPECT_EQ(window_->emptyText(), text);
        }
    }
    window_->state()->setQuery({});
    window_->showFolder(QStringLiteral("file:///p/"));
    EXPECT_EQ(window_->title(), "p");
    EXPECT_EQ(window_->page(), LibraryWindow::Photos);

    system_.remove("/p/a.jpg");
    system_.remove("/p/b.jpg");
    model_->availability().refresh();
    settle();
    EXPECT_EQ(window_->emptyText(), "Reconnect a drive to view photos.");
    window_->showSection(WindowState::Offline);
    EXPECT_EQ(window_->page(), LibraryWindow::Photos);
}

TEST_F(LibraryWindowTest, ChoosingAnotherMethodOrLevelScansAnew) {
    open({"a.jpg", "b.jpg"});
    window_->setLevel(0);
    EXPECT_FALSE(model_->matches().running()) << "no scan had finished";
    findGroups({{0, 1}});
    EXPECT_EQ(model_->matches().groupCount(), 1);
    window_->setLevel(2);
    EXPECT_TRUE(model_->matches().running());
    settle();
    model_->selection().toggle(named(0));
    window_->setMethod(0);
    EXPECT_EQ(model_->matches().groupCount(), 0);
    EXPECT_EQ(model_->selection().count(), 0);
    EXPECT_TRUE(model_->matches().running());
    settle();
}

TEST_F(LibraryWindowTest, RemovalAsksFirst) {
    open({"a.jpg"});
    const auto* folders = window_->folders();
    window_->askToRemove(QStringLiteral("file:///p/"));
    window_->answerRemoval(false);
    EXPECT_EQ(folders->rowCount(), 1);
    EXPECT_EQ(window_->folderToRemove(), "");
    window_->askToRemove(QStringLiteral("file:///p/"));
    window_->answerRemoval(true);
    EXPECT_EQ(folders->rowCount(), 0);
    EXPECT_EQ(window_->page(), LibraryWindow::Welcome);
    settle();
}

TEST_F(LibraryWindowTest, AddsDroppedFoldersOneAfterAnotherAndNamesTheRest) {
    open({});
    system_.makeFolder("/d/one");
    system_.makeFolder("/d/caf\xE9");
    system_.write("/d/note.txt", "");
    int fileAccesses = 0;
    system_.before = [&](std::string_view, const std::string&) { ++fileAccesses; };
    window_->addFolders({QUrl(QStringLiteral("https://example.org/x")), QUrl(QStringLiteral("file:///d/one")),
                         QUrl(QStringLiteral("file:///d/note.txt")), QUrl(QStringLiteral("file:///d/gone")),
                         QUrl::fromEncoded("file:///d/caf%E9/")});
    EXPECT_EQ(fileAccesses, 0) << "a drive that hangs would hold up the window";
    settle();
    EXPECT_EQ(window_->notice(), "Only folders can be added: https://example.org/x, note.txt, gone");
    EXPECT_THAT(model_->library().folders(), ElementsAre(url("/p/"), url("/d/one/"), url("/d/caf\xE9/")));
    EXPECT_EQ(window_->folders()->rowCount(), 3);
}

TEST_F(LibraryWindowTest, OffersANewDriveUntilItIsAnswered) {
    open({});
    volumes_ = {{.url = url("/media/CARD/"), .external = true}};
    model_->drives().update();
    EXPECT_EQ(window_->deviceName(), "CARD");
    std::vector<QString> browsed;
    QObject::connect(window_.get(), &LibraryWindow::folderWanted,
                     [&](const QString& at) { browsed.push_back(at); });
    window_->browseDevice();
    EXPECT_THAT(browsed, ElementsAre("file:///media/CARD/"));
    EXPECT_EQ(window_->deviceName(), "");
    settle();
}

TEST_F(LibraryWindowTest, AsksToCompareTwoPhotosWithinTheirGroup) {
    open({"a.jpg", "b.jpg", "c.jpg"});
    std::vector<std::pair<std::size_t, std::size_t>> asked;
    QObject::connect(
        window_->state(), &WindowState::compareWanted,
        [&](const auto& photos, const auto& group) { asked.emplace_back(photos.size(), group.size()); });
    findGroups({{0, 1, 2}});
    model_->selection().toggle(named(1));
    window_->state()->compare(); // one is no pair
    model_->selection().toggle(named(2));
    window_->state()->compare();
    window_->showSection(WindowState::Library);
    model_->selection().toggle(named(1));
    model_->selection().toggle(named(2));
    window_->state()->compare();
    EXPECT_THAT(asked, ElementsAre(std::pair(2, 3), std::pair(2, 0)));
}

TEST_F(LibraryWindowTest, AsksForDetailsOfAReadablePhotoAlone) {
    open({"a.jpg", "b.jpg"});
    int wanted = 0;
    QObject::connect(window_->state(), &WindowState::detailsWanted, [&] { ++wanted; });
    window_->state()->showDetails();
    window_->state()->showDetails(photo("/p/missing.jpg"));
    EXPECT_EQ(wanted, 0);
    window_->state()->showDetails(named(1));
    EXPECT_EQ(wanted, 1);
    EXPECT_EQ(model_->selection().detailPhoto(), named(1));
}

TEST_F(LibraryWindowTest, FollowsTheFolderOnShowAndMarksInItsSections) {
    open({"a.jpg", "b.jpg"});
    window_->state()->setSection(model::Section::keep);
    EXPECT_EQ(window_->photos()->rowCount(), 0);
    model_->marking().mark({named(0)}, library::ReviewDecision::keep);
    settle();
    EXPECT_EQ(window_->photos()->rowCount(), 1);
    system_.write("/p/a.jpg", "edited");
    model_->availability().refresh();
    settle();
    EXPECT_EQ(window_->photos()->rowCount(), 0) << "the mark is stale";
    window_->showFolder(QStringLiteral("file:///p/"));
    EXPECT_EQ(window_->photos()->rowCount(), 2);
    ASSERT_TRUE(model_->rename(named(0), "z"));
    EXPECT_EQ(window_->photos()->rowCount(), 2);
    model_->removeFolder(url("/p/"));
    EXPECT_EQ(window_->state()->section(), model::Section::library);
    settle();
}

TEST_F(LibraryWindowTest, GroupsOnShowKeepTheirRowsThroughARename) {
    open({"a.jpg", "b.jpg", "c.jpg"});
    findGroups({{0, 1}, {1, 2}});
    auto* rows = window_->groups();
    int resets = 0, touched = 0;
    QObject::connect(rows, &QAbstractItemModel::modelReset, [&] { ++resets; });
    QObject::connect(rows, &QAbstractItemModel::dataChanged, [&] { ++touched; });
    ASSERT_TRUE(model_->rename(named(0), "z"));
    settle();
    EXPECT_EQ(resets, 0);
    EXPECT_GT(touched, 0);
    EXPECT_EQ(rows->photo(0).url.name(), "z.jpg");
    EXPECT_EQ(model_->matches().groupCount(), 2) << "a new name is no other file";
}

TEST_F(LibraryWindowTest, ANoticeNamesTheLibraryThatWasSetAside) {
    system_.write(document_.path(), "{");
    model_ = std::make_unique<model::LibraryModel>(document_, std::nullopt, dependencies());
    window_ = std::make_unique<LibraryWindow>(*model_);
    settle();
    EXPECT_THAT(window_->notice().toStdString(), testing::StartsWith("Could not restore library: "));
    system_.makeFolder("/d");
    model_->folderImport().importFolder(url("/d/"));
    settle();
    finish(model_->flush());
    EXPECT_THAT(window_->notice().toStdString(),
                testing::StartsWith("Library could not be read · Kept as library.json.unreadable-"));
    EXPECT_THAT(window_->status()->text().toStdString(), testing::Not(testing::StartsWith("Could not")));
}

TEST(StatusText, InflectsCountsAndLeavesOutEmptyParts) {
    using namespace model;
    struct Case {
        Report report;
        const char* text;
    };
    for (const auto& [report, text] :
         {Case{NothingToRestore{}, "Ready"}, Case{LibraryRestored{}, "Library restored"},
          Case{RestoreFailed{"x"}, "Could not restore library: x"},
          Case{SaveFailed{"x"}, "Could not save library: x"},
          Case{FolderScanStarted{files::FileUrl::fromPath("/a/q/")}, "Scanning q…"},
          Case{FolderScanProgress{200}, "Scanning 200 photos…"}, Case{ImportSummary{1}, "1 photo scanned"},
          Case{ImportSummary{12, 3, true}, "12 photos scanned · 3 unreadable · stopped"},
          Case{FolderRemoved{}, "Removed from library · Files unchanged"}, Case{Stopping{}, "Stopping…"},
          Case{AvailabilitySummary{2, 0}, "2 available · 0 unavailable"}, Case{MarkSummary{3}, "3 marked"},
          Case{MarkSummary{1, 1}, "1 marked · 1 unavailable"},
          Case{MatchSummary{.method = SimilarityMethod::exact, .groups = 1}, "1 exact-copy group"},
          Case{MatchSummary{
                   .method = SimilarityMethod::nearDuplicates, .groups = 7, .unreadable = 2, .lowDetail = 5},
               "7 near-duplicate groups · 2 unreadable · 5 low-detail skipped"},
          Case{MatchSummary{.method = SimilarityMethod::visual, .failures = {"a: b"}},
               "0 visual groups · 1 failed"},
          Case{MatchCancelled{}, "Scan cancelled"}, Case{MatchFailed{"x"}, "Similarity scan failed: x"}})
        EXPECT_EQ(statusText(report).toStdString(), text);
}

} // namespace lumisort::review
