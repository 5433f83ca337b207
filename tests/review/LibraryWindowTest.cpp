#include "ReviewWorld.h"

namespace lumisort::review {

using testing::ElementsAre;
using testing::SizeIs;

namespace {

class LibraryWindowTest : public ReviewWorld {};

} // namespace

TEST_F(LibraryWindowTest, ShowsThePageThatTheLibraryCallsFor) {
    open({});
    EXPECT_EQ(window_->page(), "welcome");
    open({"a.jpg", "b.jpg"});
    struct Case {
        const char *section, *query, *page, *title, *text;
    };
    for (const auto& [section, query, page, title, text] :
         {Case{"library", "", "photos", "All Photos", ""},
          Case{"library", "zz", "empty", "All Photos", "No matching photos"},
          Case{"keep", "", "empty", "Import", "No matching photos"},
          Case{"cleanup", "", "empty", "Skip", "No matching photos"},
          Case{"offline", "", "empty", "Unavailable", "No matching photos"},
          Case{"similar", "", "findMatches", "Similar Photos", ""}}) {
        window_->showSection(QString::fromUtf8(section));
        model_->setQuery(QString::fromUtf8(query));
        EXPECT_EQ(window_->page(), page) << section;
        EXPECT_EQ(window_->title(), title);
        if (std::string_view(page) == "empty") {
            EXPECT_EQ(window_->emptyText(), text);
        }
    }
    model_->setQuery({});
    window_->showFolder(QStringLiteral("file:///p/"));
    EXPECT_EQ(window_->title(), "p");
    EXPECT_EQ(window_->page(), "photos");

    system_.remove("/p/a.jpg");
    system_.remove("/p/b.jpg");
    model_->refreshAvailability();
    settle();
    EXPECT_EQ(window_->emptyText(), "Reconnect a drive to view photos.");
    window_->showSection(QStringLiteral("offline"));
    EXPECT_EQ(window_->page(), "photos");
}

TEST_F(LibraryWindowTest, ChoosingAnotherMethodOrLevelScansAnew) {
    open({"a.jpg", "b.jpg"});
    window_->setLevel(0);
    EXPECT_FALSE(model_->similarityRunning()) << "no scan had finished";
    findGroups({{0, 1}});
    EXPECT_EQ(window_->groupCount(), 1);
    window_->setLevel(2);
    EXPECT_TRUE(model_->similarityRunning());
    settle();
    model_->select(named(0));
    window_->setMethod(0);
    EXPECT_EQ(window_->groupCount(), 0);
    EXPECT_EQ(window_->selectedCount(), 0);
    EXPECT_TRUE(model_->similarityRunning());
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
    EXPECT_EQ(window_->page(), "welcome");
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
    EXPECT_THAT(model_->folders(), ElementsAre(url("/p/"), url("/d/one/"), url("/d/caf\xE9/")));
    EXPECT_EQ(window_->folders()->rowCount(), 3);
}

TEST_F(LibraryWindowTest, OffersANewDriveUntilItIsAnswered) {
    open({});
    volumes_ = {{.url = url("/media/CARD/"), .external = true}};
    model_->updateDevices();
    EXPECT_EQ(window_->deviceName(), "CARD");
    std::vector<QString> browsed;
    QObject::connect(window_.get(), &LibraryWindow::folderWanted,
                     [&](const QString& at) { browsed.push_back(at); });
    window_->browseDevice();
    EXPECT_THAT(browsed, ElementsAre("file:///media/CARD/"));
    EXPECT_EQ(window_->deviceName(), "");
    settle();
}

TEST_F(LibraryWindowTest, KnowsTheGroupThatIsCompared) {
    open({"a.jpg", "b.jpg", "c.jpg"});
    findGroups({{0, 1, 2}});
    model_->select(named(1));
    model_->select(named(2));
    EXPECT_THAT(window_->comparedGroup(), SizeIs(3));
    window_->showSection(QStringLiteral("library"));
    model_->select(named(1));
    model_->select(named(2));
    EXPECT_THAT(window_->comparedGroup(), SizeIs(0));
}

} // namespace lumisort::review
