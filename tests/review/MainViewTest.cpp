#include "ReviewWorld.h"
#include "support/quick/QuickStage.h"
#include "ui/ThumbnailProvider.h"

#include <QtTest/qtestmouse.h>

#include <QAccessible>

void qml_register_types_Lumisort_Actions();
void qml_register_types_Lumisort_Marks();
void qml_register_types_Lumisort_Review();

namespace lumisort::review {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const QByteArray window = R"(
import QtQuick
import QtQuick.Window
import Lumisort.Review
Window {
    id: stage
    property LibraryWindow library
    width: 1250
    height: 820
    MainView { anchors.fill: parent; window: stage.library; focus: true }
})";

class MainViewTest : public ReviewWorld {
protected:
    MainViewTest() {
        qml_register_types_Lumisort_Actions();
        qml_register_types_Lumisort_Marks();
        qml_register_types_Lumisort_Review();
        stage_.engine().addImageProvider(QStringLiteral("thumbnail"), new ui::ThumbnailProvider(store_));
    }

    void show(const std::vector<std::string>& names) {
        open(names);
        stage_.show(window, {{QStringLiteral("library"), QVariant::fromValue(window_.get())}});
    }

    ~MainViewTest() override { stage_.window().close(); }

    library::ThumbnailStore store_;
    test::QuickStage stage_;
};

} // namespace

TEST_F(MainViewTest, IsUsedByKeyboardAlone) {
    show({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
    stage_.key(Qt::Key_End); // the keyboard is among the photos from the start
    EXPECT_EQ(window_->cursor()->position(), 3);
    stage_.key(Qt::Key_F, Qt::ControlModifier);
    stage_.type(QStringLiteral("a.j"));
    EXPECT_EQ(window_->state()->photos().rows().size(), 1u);
    stage_.key(Qt::Key_Escape);
    EXPECT_EQ(window_->state()->photos().rows().size(), 4u);
    stage_.key(Qt::Key_Return); // from the search to the photos
    stage_.key(Qt::Key_Home);
    stage_.key(Qt::Key_Space);
    stage_.key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_THAT(selectedNames(), ElementsAre("a.jpg", "b.jpg"));
    EXPECT_TRUE(stage_.has(QStringLiteral("2 selected")));
    stage_.key(Qt::Key_K, Qt::ControlModifier);
    settle();
    EXPECT_EQ(model_->library().keptCount(), 2);
    stage_.key(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(model_->library().keptCount(), 0);
    bool compared = false;
    QObject::connect(window_->state(), &WindowState::compareWanted, [&] { compared = true; });
    stage_.key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_TRUE(compared);

    int opened = -1;
    QObject::connect(window_->state(), &WindowState::fullscreenWanted,
                     [&](const auto&, int index) { opened = index; });
    stage_.type(QStringLiteral("d"));
    stage_.key(Qt::Key_Return);
    EXPECT_EQ(opened, 3);
    stage_.key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(model_->selection().count(), 4);
    const auto* face = QAccessible::queryAccessibleInterface(stage_.item(QStringLiteral("c.jpg")));
    EXPECT_TRUE(face->state().selected);
}

TEST_F(MainViewTest, OpensThePhotosMenuByKeyAndGoesOnAmongThePhotos) {
    show({"a.jpg", "b.jpg"});
    stage_.key(Qt::Key_End);
    stage_.key(Qt::Key_Menu);
    EXPECT_TRUE(stage_.has(QStringLiteral("Show in File Manager")));
    for (int down = 0; down < 3; ++down) stage_.key(Qt::Key_Down); // past Film…, which is disabled
    stage_.key(Qt::Key_Return);
    settle();
    EXPECT_EQ(model_->library().skipCount(), 1);
    ASSERT_TRUE(stage_.until([&] { return !stage_.has(QStringLiteral("Show in File Manager")); }));
    stage_.key(Qt::Key_Home);
    EXPECT_EQ(window_->cursor()->position(), 0);
}

TEST_F(MainViewTest, AClickBesideAMenuOnlyPutsItAway) {
    show({"a.jpg", "b.jpg"});
    const auto click = [&](Qt::MouseButton button, const char* name) {
        const auto* card = stage_.item(QString::fromLatin1(name));
        QTest::mouseClick(&stage_.window(), button, {}, card->mapToScene({50, 20}).toPoint());
        stage_.settle();
    };
    click(Qt::RightButton, "a.jpg");
    ASSERT_TRUE(stage_.has(QStringLiteral("Show in File Manager")));
    click(Qt::LeftButton, "b.jpg");
    ASSERT_TRUE(stage_.until([&] { return !stage_.has(QStringLiteral("Show in File Manager")); }));
    EXPECT_THAT(selectedNames(), IsEmpty());
    click(Qt::LeftButton, "b.jpg");
    EXPECT_THAT(selectedNames(), ElementsAre("b.jpg"));

    findGroups({{0, 1}});
    stage_.settle();
    stage_.click(QStringLiteral("Matching"));
    ASSERT_TRUE(stage_.until([&] { return stage_.has(QStringLiteral("Loose")); }));
    click(Qt::LeftButton, "b.jpg");
    ASSERT_TRUE(stage_.until([&] { return !stage_.has(QStringLiteral("Loose")); }));
    EXPECT_THAT(selectedNames(), IsEmpty());
}

TEST_F(MainViewTest, IsUsedByMouseAlone) {
    show({"a.jpg", "b.jpg", "c.jpg"});
    stage_.click(QStringLiteral("b.jpg"));
    EXPECT_THAT(selectedNames(), ElementsAre("b.jpg"));
    stage_.click(QStringLiteral("Skip"));
    settle();
    stage_.click(QStringLiteral("Undo"));
    settle();
    EXPECT_EQ(model_->library().skipCount(), 0);
    stage_.click(QStringLiteral("Redo"));
    settle();
    EXPECT_EQ(model_->library().skipCount(), 1);
    stage_.click(QStringLiteral("Skip, 1"));
    EXPECT_EQ(window_->state()->section(), model::Section::cleanup);
    EXPECT_THAT(selectedNames(), IsEmpty());
    EXPECT_TRUE(stage_.has(QStringLiteral("b.jpg, Skip")));
    stage_.click(QStringLiteral("p"));
    EXPECT_EQ(window_->state()->section(), model::Section::folder);

    findGroups({{0, 2}});
    stage_.settle();
    EXPECT_THAT(stage_.names(), Contains("Group 1"));
    stage_.click(QStringLiteral("c.jpg"));
    EXPECT_THAT(selectedNames(), ElementsAre("c.jpg"));
}

TEST_F(MainViewTest, ShowsInTheGroupsWhatAClickSelectsAfterEverySearch) {
    std::vector<std::string> names;
    for (int group = 10; group < 60; ++group)
        for (const char* word : {"odd", "even"})
            names.push_back(std::string(word) + (group % 2 ? "x" : "y") + std::to_string(group) + ".jpg");
    show(names);
    std::vector<std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i + 1 < names.size(); i += 2) groups.push_back({i, i + 1});
    findGroups(groups);
    window_->showSection(WindowState::Similar);
    stage_.settle();
    for (const char* query : {"", "x", "y", "y2", "", "x3", "y"}) {
        SCOPED_TRACE(query);
        window_->state()->setQuery(QString::fromLatin1(query));
        stage_.settle();
        for (int page = 0; page < 3; ++page) {
            const auto cards = stage_.names().filter(QStringLiteral(".jpg"));
            ASSERT_FALSE(cards.isEmpty());
            const auto middle = cards.at(cards.size() / 2);
            EXPECT_THAT(middle.toStdString(), testing::HasSubstr(query));
            model_->selection().clear();
            stage_.settle();
            auto* card = stage_.item(middle);
            ASSERT_TRUE(QMetaObject::invokeMethod(window_->cursor(), "click",
                                                  Q_ARG(int, card->property("position").toInt()),
                                                  Q_ARG(bool, false)));
            EXPECT_THAT(selectedNames(), ElementsAre(middle.toStdString()));
            stage_.key(Qt::Key_PageDown);
        }
    }
}

TEST_F(MainViewTest, KeepsItsPlaceInALongList) {
    std::vector<std::string> names;
    for (int i = 1000; i < 4000; ++i) names.push_back(std::to_string(i) + ".jpg");
    show(names);
    const auto onShow = [&](const char* name) {
        const auto* card = stage_.item(QString::fromLatin1(name));
        return stage_.window().contentItem()->boundingRect().contains(
            card->mapRectToScene(card->boundingRect()));
    };
    for (int page = 0; page < 10; ++page) stage_.key(Qt::Key_PageDown);
    ASSERT_TRUE(onShow("1100.jpg"));
    model_->marking().mark({named(99)}, library::ReviewDecision::cleanup);
    settle();
    EXPECT_TRUE(onShow("1100.jpg"));
    for (const int width : {1000, 1800, 1250}) { // other numbers of columns
        SCOPED_TRACE(width);
        stage_.window().resize(width, 820);
        stage_.settle();
        EXPECT_TRUE(onShow("1100.jpg"));
    }
    window_->state()->setQuery(QStringLiteral("7")); // hundreds of runs go, those on show among them
    stage_.settle();
    EXPECT_EQ(window_->state()->photos().rows().size(), 813u);
    EXPECT_FALSE(stage_.names().filter(QStringLiteral("7.jpg")).isEmpty());
    stage_.key(Qt::Key_End);
    EXPECT_TRUE(onShow("3997.jpg"));
    window_->state()->setQuery(QStringLiteral("1007"));
    stage_.settle();
    EXPECT_TRUE(onShow("1007.jpg"));
}

TEST_F(MainViewTest, RemovesAFolderOnlyWhenItIsConfirmed) {
    show({"a.jpg"});
    stage_.click(QStringLiteral("Folder actions for p"));
    stage_.click(QStringLiteral("Remove from Library…"));
    EXPECT_TRUE(stage_.has(QStringLiteral("Remove folder from library?")));
    stage_.click(QStringLiteral("Cancel"));
    EXPECT_THAT(model_->library().folders(), SizeIs(1));
    ASSERT_TRUE(stage_.until([&] { return !stage_.has(QStringLiteral("Cancel")); }));
    stage_.click(QStringLiteral("Folder actions for p"));
    stage_.click(QStringLiteral("Remove from Library…"));
    stage_.click(QStringLiteral("Remove from Library"));
    settle();
    EXPECT_THAT(model_->library().folders(), IsEmpty());
    EXPECT_TRUE(stage_.has(QStringLiteral("Add photos")));
}

TEST_F(MainViewTest, AsksOnceBeforeProtectedPhotosAreSkipped) {
    show({"a.jpg", "b.jpg", "c.jpg"});
    const auto stored = model_->protection().set(url("/elsewhere"), true);
    finish(stored);
    stage_.click(QStringLiteral("Folder actions for p"));
    stage_.click(QStringLiteral("Protect…"));
    stage_.click(QStringLiteral("Protect"));
    ASSERT_TRUE(stage_.until([&] { return stage_.has(QStringLiteral("p, protected")); }));
    ASSERT_TRUE(stage_.until([&] { return !stage_.has(QStringLiteral("Cancel")); }));

    const auto skipByKey = [&] {
        stage_.key(Qt::Key_D, Qt::ControlModifier);
        settle();
    };
    const auto answer = [&](const char* button) {
        ASSERT_TRUE(stage_.until([&] { return stage_.has(QString::fromLatin1(button)); }));
        EXPECT_EQ(model_->library().skipCount(), 0);
        stage_.click(QString::fromLatin1(button));
        settle();
        ASSERT_TRUE(stage_.until([&] { return !stage_.has(QStringLiteral("Skip Anyway")); }));
    };
    stage_.click(QStringLiteral("b.jpg"));
    skipByKey();
    EXPECT_TRUE(stage_.has(QStringLiteral("Skip a protected photo?")));
    EXPECT_TRUE(stage_.has(QStringLiteral("“b.jpg” is in the protected folder “/p”.")));
    EXPECT_FALSE(window_->marks()->canUndo());
    stage_.key(Qt::Key_Escape);
    settle();
    ASSERT_TRUE(stage_.until([&] { return !stage_.has(QStringLiteral("Skip Anyway")); }));
    EXPECT_EQ(model_->library().skipCount(), 0);
    EXPECT_FALSE(window_->marks()->canUndo());

    stage_.click(QStringLiteral("Skip")); // the button of the selection
    settle();
    answer("Skip Anyway");
    EXPECT_EQ(model_->library().skipCount(), 1);
    stage_.key(Qt::Key_Z, Qt::ControlModifier); // neither undo nor redo asks
    settle();
    EXPECT_EQ(model_->library().skipCount(), 0);
    stage_.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    EXPECT_EQ(model_->library().skipCount(), 1);
    EXPECT_FALSE(stage_.has(QStringLiteral("Skip Anyway")));
    skipByKey(); // skipped already
    EXPECT_FALSE(stage_.has(QStringLiteral("Skip Anyway")));

    stage_.key(Qt::Key_A, Qt::ControlModifier);
    stage_.key(Qt::Key_K, Qt::ControlModifier); // keeping never asks
    settle();
    EXPECT_EQ(model_->library().keptCount(), 3);
    skipByKey();
    EXPECT_TRUE(stage_.has(QStringLiteral("Skip 3 protected photos?")));
    answer("Skip Anyway");
    EXPECT_EQ(model_->library().skipCount(), 3);
    stage_.key(Qt::Key_Z, Qt::ControlModifier); // one step
    settle();
    EXPECT_EQ(model_->library().keptCount(), 3);

    stage_.click(QStringLiteral("Folder actions for p"));
    stage_.click(QStringLiteral("End Protection"));
    ASSERT_TRUE(stage_.until([&] { return stage_.has(QStringLiteral("p")); }));
    skipByKey();
    EXPECT_EQ(model_->library().skipCount(), 3);
}

TEST_F(MainViewTest, SkipsTheUnprotectedPhotosOfAMixedChoice) {
    show({"a.jpg", "b.jpg", "inner/c.jpg"});
    const auto stored = model_->protection().set(url("/p/inner"), true);
    finish(stored);
    stage_.key(Qt::Key_A, Qt::ControlModifier);
    stage_.key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_TRUE(stage_.has(QStringLiteral("1 of 3 photos is in the protected folder “/p/inner”.")));
    stage_.click(QStringLiteral("Skip the Other 2"));
    settle();
    EXPECT_EQ(model_->library().skipCount(), 2);
    EXPECT_EQ(model_->library().decision(named(2)), std::nullopt);
}

TEST_F(MainViewTest, GivesTheKeyboardToThePhotosWhenABarGoes) {
    show({"a.jpg", "b.jpg"});
    window_->addFolders({QUrl(QStringLiteral("sftp://nas/photos"))});
    stage_.settle();
    stage_.item(QStringLiteral("Dismiss"))->forceActiveFocus(Qt::TabFocusReason);
    stage_.key(Qt::Key_Return);
    EXPECT_FALSE(stage_.has(QStringLiteral("Dismiss")));
    stage_.key(Qt::Key_End);
    EXPECT_EQ(window_->cursor()->position(), 1);

    model_->selection().toggle(named(0));
    stage_.settle();
    stage_.item(QStringLiteral("Clear Choice"))->forceActiveFocus(Qt::TabFocusReason);
    stage_.key(Qt::Key_Return);
    EXPECT_THAT(selectedNames(), IsEmpty());
    stage_.key(Qt::Key_Home);
    EXPECT_EQ(window_->cursor()->position(), 0);
}

TEST_F(MainViewTest, OffersTheSettings) {
    show({"a.jpg"});
    int asked = 0;
    QObject::connect(window_->actions()->of(ActionSet::Settings), &ui::Command::triggered, [&] { ++asked; });
    stage_.click(QStringLiteral("Settings"));
    stage_.key(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(asked, 2);
}

TEST_F(MainViewTest, NamesEverythingThatTakesInput) {
    show({"a.jpg"});
    EXPECT_THAT(stage_.nameless(), IsEmpty());
}

} // namespace lumisort::review
