#include "model/ModelWorld.h"
#include "review/details/PhotoDetailsController.h"
#include "support/quick/QuickStage.h"
#include "ui/ColourScheme.h"
#include "ui/ThumbnailProvider.h"

#include <QGuiApplication>
#include <cmath>

void qml_register_types_Lumisort_Details();

namespace lumisort::review {
namespace {

/// A photo-like picture, 3 : 2 or, where the name says so, tall.
images::Bitmap picture(const files::FileUrl& url, int, const std::stop_token&) {
    if (url.name().starts_with("broken")) throw images::ImageError("is no photo");
    const bool tall = url.name().starts_with("tall");
    images::Bitmap made{.width = tall ? 600 : 900, .height = tall ? 900 : 600};
    for (int y = 0; y < made.height; ++y)
        for (int x = 0; x < made.width; ++x) {
            const auto hill = made.height * (0.55 + 0.12 * std::sin(x * 0.01));
            made.rgba.insert(made.rgba.end(), {static_cast<std::uint8_t>(y < hill ? 120 + y / 8 : 60),
                                               static_cast<std::uint8_t>(y < hill ? 150 + y / 9 : 90),
                                               static_cast<std::uint8_t>(y < hill ? 190 : 50), 255});
        }
    return made;
}

class DetailsWindowTest : public model::ModelWorld {
protected:
    DetailsWindowTest() {
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
        if (name != "undated.png") session.photos[0].date = time::Timestamp(817'065'900);
        library_ = model(session);
        controller_ = std::make_unique<PhotoDetailsController>(*library_, stage_.engine());
        library_->showDetails(library_->photos()[0]);
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

    library::ThumbnailStore store_{picture};
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
    library_->showDetails();
    EXPECT_EQ(controller_->panel(), panel);
    EXPECT_TRUE(panel->isVisible());
    library_->select(library_->photos()[0]);
    EXPECT_TRUE(stage_.has(QStringLiteral("Select a photo")));
}

TEST_F(DetailsWindowTest, TellsWhatIsKnownByNames) {
    show("a.jpg");
    library_->mark({library_->photos()[0]}, library::ReviewDecision::cleanup);
    settle();
    const auto names = stage_.names();
    for (const auto* each : {"a.jpg", "Rename", "Skip", "Dimensions", "6000 × 4000", "Size", "12.4 MB",
                             "Format", "JPG", "Date Taken", "Location", "/p/a.jpg", "Show in Finder"})
        EXPECT_TRUE(names.contains(QString::fromUtf8(each))) << each;
    EXPECT_EQ(stage_.nameless(), QStringList());
}

TEST_F(DetailsWindowTest, RenamesByEnter) {
    show("a.jpg");
    openRename();
    EXPECT_EQ(stage_.nameless(), QStringList());
    stage_.type(QStringLiteral("holiday")); // over the selected stem
    stage_.key(Qt::Key_Return);
    EXPECT_EQ(library_->photos()[0].url.path(), "/p/holiday.jpg");
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
    EXPECT_EQ(library_->photos()[0].url.path(), "/p/a.jpg");
}

TEST_F(DetailsWindowTest, CanBeLookedAt) {
    if (!qEnvironmentVariableIsSet("LUMISORT_PICTURES")) GTEST_SKIP() << "no folder for pictures is named";
    for (const bool dark : {true, false}) {
        ui::ColourScheme::shared().pin(dark);
        const auto theme = dark ? QStringLiteral("-dark") : QStringLiteral("-light");
        const std::string longName =
            "A very long name of a photo that was taken on a holiday in the mountains " +
            std::string(120, 'x') + " 0001.jpeg";
        for (const auto& [name, label] : {std::pair{std::string("IMG_0412.JPG"), "photo"},
                                          {std::string("tall.NEF"), "tall"},
                                          {std::string("undated.png"), "undated"},
                                          {std::string("broken.tif"), "broken"},
                                          {longName, "long"}}) {
            if (name == "broken.tif") stage_.expectWarning(QStringLiteral("no preview"));
            show(name);
            library_->mark({library_->photos()[0]}, name == "tall.NEF" ? library::ReviewDecision::cleanup
                                                                       : library::ReviewDecision::keep);
            settle();
            stage_.picture(QStringLiteral("details-%1").arg(QString::fromUtf8(label)) + theme);
        }
        openRename();
        stage_.picture(QStringLiteral("rename") + theme);
        stage_.type(QStringLiteral("a/b"));
        stage_.key(Qt::Key_Return);
        stage_.picture(QStringLiteral("rename-refused") + theme);
        stage_.key(Qt::Key_Escape);
        stage_.moveTo(*controller_->panel());
        library_->select(library_->photos()[0]);
        stage_.picture(QStringLiteral("details-none") + theme);
    }
}

} // namespace
} // namespace lumisort::review
