#include "model/ModelWorld.h"
#include "review/details/PhotoDetailsController.h"
#include "support/quick/QuickStage.h"
#include "ui/ThumbnailProvider.h"

#include <QAccessible>
#include <QGuiApplication>

void qml_register_types_Lumisort_Details();
void qml_register_types_Lumisort_Marks();

namespace lumisort::review {
namespace {

class DetailsWindowTest : public model::ModelWorld {
protected:
    DetailsWindowTest() {
        qml_register_types_Lumisort_Marks();
        qml_register_types_Lumisort_Details();
        stage_.engine().addImageProvider(QStringLiteral("thumbnail"), new ui::ThumbnailProvider(store_));
        stage_.show("import QtQuick\nWindow { width: 600; height: 400 }");
    }

    /// Opens the panel for the only photo of a library.
    void show(const std::string& name) {
        auto session = libraryOf({name});
        session.photos[0].bytes = 12'400'000;
        session.photos[0].width = 6000;
        session.photos[0].height = 4000;
        library_ = model(session);
        controller_ = std::make_unique<PhotoDetailsController>(*library_, stage_.engine());
        library_->selection().toggle(library_->library().photos()[0]);
        controller_->show();
        ASSERT_NE(controller_->panel(), nullptr);
        stage_.moveTo(*controller_->panel());
        stage_.settle();
    }

    /// The rename sheet has the keyboard.
    void openRename() {
        stage_.click(QStringLiteral("Rename"));
        ASSERT_TRUE(test::QuickStage::until([this] {
            auto* front = QGuiApplication::focusWindow();
            return front && front != controller_->panel() && front->isVisible();
        }));
        stage_.moveTo(*qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow()));
        stage_.settle();
    }

    library::ThumbnailStore store_{
        [](const auto&, int, const auto&) { return images::Bitmap(3, 2, std::vector<std::uint8_t>(24)); }};
    test::QuickStage stage_;
    std::unique_ptr<model::LibraryModel> library_;
    std::unique_ptr<PhotoDetailsController> controller_;
};

TEST_F(DetailsWindowTest, IsMadeOnceAndHiddenWhenItCloses) {
    show("a.jpg");
    auto* panel = controller_->panel();
    EXPECT_EQ(panel->size(), QSize(320, 650));
    EXPECT_EQ(panel->title(), QStringLiteral("Details"));
    stage_.key(Qt::Key_Escape);
    EXPECT_FALSE(panel->isVisible());
    controller_->show();
    EXPECT_EQ(controller_->panel(), panel);
    EXPECT_TRUE(panel->isVisible());
    library_->selection().toggle(library_->library().photos()[0]);
    EXPECT_TRUE(stage_.has(QStringLiteral("Select a photo")));
}

TEST_F(DetailsWindowTest, HidesWhileAnotherProgramIsInFront) {
    show("a.jpg");
    auto* panel = controller_->panel();
    const auto becomes = [](Qt::ApplicationState state) { Q_EMIT qGuiApp->applicationStateChanged(state); };
    becomes(Qt::ApplicationInactive);
    EXPECT_FALSE(panel->isVisible());
    becomes(Qt::ApplicationActive);
    EXPECT_TRUE(panel->isVisible());
    panel->close();
    becomes(Qt::ApplicationInactive);
    becomes(Qt::ApplicationActive);
    EXPECT_FALSE(panel->isVisible()) << "closed by the user";
}

TEST_F(DetailsWindowTest, TellsWhatIsKnownByNames) {
    show("a.jpg");
    library_->marking().mark({library_->library().photos()[0]}, library::ReviewDecision::cleanup);
    settle();
    const auto names = stage_.names();
    for (const auto* each : {"a.jpg", "Rename", "Skip", "Dimensions", "6000 × 4000", "Size", "12.4 MB",
                             "Format", "JPG", "Date Taken", "Location", "Show in File Manager"})
        EXPECT_TRUE(names.contains(QString::fromUtf8(each))) << each;
    EXPECT_EQ(stage_.nameless(), QStringList());
}

TEST_F(DetailsWindowTest, ReachesTheLocationByKeyboard) {
    show("a.jpg");
    const auto reached = [&] {
        auto* item = stage_.window().activeFocusItem();
        auto* face = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
        return face ? face->text(QAccessible::Name).toStdString() : "";
    };
    std::vector<std::string> stops;
    for (int i = 0; i < 3; ++i) {
        stage_.key(Qt::Key_Tab);
        stops.push_back(reached());
    }
    EXPECT_THAT(stops, testing::UnorderedElementsAre("Rename", "Location", "Show in File Manager"));
    for (int i = 0; i < 3 && reached() != "Location"; ++i) stage_.key(Qt::Key_Tab);
    EXPECT_EQ(stage_.window().activeFocusItem()->property("text"), QStringLiteral("/p/a.jpg"));
}

TEST_F(DetailsWindowTest, RenamesByEnter) {
    show("a.jpg");
    openRename();
    EXPECT_EQ(stage_.nameless(), QStringList());
    stage_.type(QStringLiteral("holiday")); // over the selected stem
    stage_.key(Qt::Key_Return);
    EXPECT_EQ(library_->library().photos()[0].url.path(), "/p/holiday.jpg");
    EXPECT_FALSE(controller_->state().renaming()->isOpen());
    EXPECT_FALSE(stage_.window().isVisible());
}

TEST_F(DetailsWindowTest, StaysOpenWithTheReasonAndClosesByEscape) {
    show("a.jpg");
    openRename();
    stage_.type(QStringLiteral("a:b"));
    stage_.key(Qt::Key_Return);
    EXPECT_TRUE(stage_.has(QStringLiteral("Enter a valid filename without / or :.")));
    for (int i = 0; i < 3; ++i) stage_.key(Qt::Key_Backspace);
    EXPECT_FALSE(stage_.item(QStringLiteral("Rename"))->isEnabled());
    stage_.key(Qt::Key_Return);
    EXPECT_TRUE(stage_.window().isVisible());
    stage_.key(Qt::Key_Escape);
    EXPECT_FALSE(stage_.window().isVisible());
    EXPECT_TRUE(controller_->panel()->isVisible());
    EXPECT_EQ(library_->library().photos()[0].url.path(), "/p/a.jpg");
}

} // namespace
} // namespace lumisort::review
