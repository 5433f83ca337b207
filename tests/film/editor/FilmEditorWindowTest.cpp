#include "film/editor/FakeServices.h"
#include "film/editor/FilmEditorController.h"
#include "film/editor/FilmPaste.h"
#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"
#include "ui/IconProvider.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <filesystem>
#include <fstream>

namespace lumisort::film {
namespace {

/// The real window over services whose answers the test gives.
class FilmEditorWindowTest : public testing::Test {
protected:
    FilmEditorWindowTest() {
        stage_.engine().addImportPath(QStringLiteral("qrc:/qt/qml"));
        stage_.engine().addImageProvider(QStringLiteral("icon"), new ui::IconProvider);
        std::ofstream(folder_.path() / "IMG_1.dng") << "raw";
        std::filesystem::create_directory_symlink(folder_.path(), folder_.path() / "link");
        controller_ = std::make_unique<FilmEditorController>(services_, stage_.engine());
    }
    ~FilmEditorWindowTest() override {
        controller_.reset();
        services_.cancelPending();
        stage_.settle();
    }

    files::FileUrl photo(const char* name = "IMG_1.dng") const {
        return files::FileUrl::fromPath((folder_.path() / name).string());
    }
    void rest() {
        ASSERT_TRUE(test::QuickStage::until([this] { return !services_.previews.empty(); }));
    }
    void open() {
        controller_->show(photo());
        stage_.moveTo(*controller_->window(photo()));
        rest();
        QImage picture(600, 400, QImage::Format_RGBX8888);
        picture.fill(QColor(120, 110, 90));
        services_.previews.back().answer({picture, picture, QSize(6000, 4000), true});
        stage_.settle();
    }

    test::TemporaryFolder folder_;
    FakeServices services_;
    test::QuickStage stage_;
    std::unique_ptr<FilmEditorController> controller_;
};

TEST_F(FilmEditorWindowTest, OpensOneWindowForEachRawPhoto) {
    controller_->show(photo("holiday.jpg"));
    EXPECT_EQ(controller_->count(), 0u);
    controller_->show(photo());
    controller_->show(photo("link/IMG_1.dng"));
    EXPECT_EQ(controller_->count(), 1u);
    EXPECT_EQ(controller_->window(photo())->title(), QStringLiteral("Film"));
    controller_->window(photo())->close();
    stage_.settle();
    EXPECT_EQ(controller_->count(), 0u);
}

TEST_F(FilmEditorWindowTest, ShowsEachState) {
    controller_->show(photo());
    stage_.moveTo(*controller_->window(photo()));
    stage_.settle();
    EXPECT_TRUE(stage_.has(QStringLiteral("Rendering preview")));
    EXPECT_FALSE(stage_.item(QStringLiteral("Original"))->isEnabled());
    rest();
    services_.previews.back().fail(std::make_exception_ptr(std::runtime_error("Film requires a RAW photo.")));
    ASSERT_TRUE(test::QuickStage::until([this] { return stage_.has(QStringLiteral("OK")); }));
    stage_.click(QStringLiteral("OK"));
    ASSERT_TRUE(test::QuickStage::until([this] { return !stage_.has(QStringLiteral("OK")); }));
    stage_.click(QStringLiteral("Retry"));
    services_.previews.clear();
    rest();
    services_.previews.back().answer({QImage(60, 40, QImage::Format_RGBX8888),
                                      QImage(60, 40, QImage::Format_RGBX8888), QSize(600, 400), true});
    stage_.settle();
    EXPECT_TRUE(stage_.has(QStringLiteral("Film preview")));
    EXPECT_TRUE(stage_.has(QStringLiteral("Developed from RAW sensor data")));
    EXPECT_THAT(stage_.nameless(), testing::IsEmpty());
}

TEST_F(FilmEditorWindowTest, IsEditedByKeysAlone) {
    open();
    auto* slider = stage_.item(QStringLiteral("Exposure"));
    slider->forceActiveFocus(Qt::TabFocusReason);
    for (int i = 0; i < 7; ++i) stage_.key(Qt::Key_Right);
    EXPECT_EQ(stage_.item(QStringLiteral("Exposure value"))->property("text"), QStringLiteral("+0.35 EV"));
    stage_.key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(stage_.item(QStringLiteral("Exposure value"))->property("text"), QStringLiteral("+0.85 EV"));
    EXPECT_FALSE(services_.drafts.empty());
    stage_.item(QStringLiteral("Grain value"))->forceActiveFocus(Qt::TabFocusReason);
    stage_.type(QStringLiteral("12"));
    stage_.key(Qt::Key_Return);
    EXPECT_EQ(stage_.item(QStringLiteral("Grain value"))->property("text"), QStringLiteral("12%"));
    EXPECT_NEAR(stage_.item(QStringLiteral("Grain"))->property("value").toDouble(), 0.12, 1e-9);
    stage_.item(QStringLiteral("Film preview"))->forceActiveFocus();
    stage_.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(stage_.item(QStringLiteral("Grain value"))->property("text"), QStringLiteral("35%"));
    stage_.key(Qt::Key_E, Qt::ControlModifier);
    ASSERT_TRUE(test::QuickStage::until([this] { return stage_.has(QStringLiteral("Name")); }));
    EXPECT_EQ(stage_.item(QStringLiteral("Name"))->property("text"), QStringLiteral("IMG_1-film.tif"));
    stage_.key(Qt::Key_Return);
    ASSERT_TRUE(test::QuickStage::until([this] { return !services_.saves.empty(); }));
    services_.saves.back().answer();
    ASSERT_TRUE(test::QuickStage::until([this] { return !services_.exports.empty(); }));
    services_.exports.back().answer();
    EXPECT_TRUE(test::QuickStage::until([this] { return stage_.has(QStringLiteral("Show")); }));
}

TEST_F(FilmEditorWindowTest, ShowsTheExportsPixelsAtActualSize) {
    open();
    stage_.click(QStringLiteral("100%"));
    const auto colourAt = [this](double x) {
        const auto picture = stage_.window().grabWindow();
        return picture.pixelColor(static_cast<int>(x * picture.width()), picture.height() / 2);
    };
    ASSERT_TRUE(test::QuickStage::until([&] { return colourAt(0.3) == QColor(Qt::green); }));
    const auto shown = services_.detailsAsked.back();
    EXPECT_NEAR(shown.center().x(), 3000, 1) << "the middle of 6000 pixels";
    EXPECT_NEAR(shown.width(), stage_.window().width() - 281, 2);
    stage_.item(QStringLiteral("Film preview"))->forceActiveFocus();
    stage_.key(Qt::Key_Right);
    ASSERT_TRUE(test::QuickStage::until([&] { return services_.detailsAsked.back().x() > shown.x(); }));
    stage_.click(QStringLiteral("Divider"));
    EXPECT_TRUE(test::QuickStage::until([&] { return colourAt(0.1) == QColor(120, 110, 90); }))
        << "the original to the left";
    EXPECT_EQ(colourAt(0.6), QColor(Qt::green));
    stage_.click(QStringLiteral("Divider"));
    stage_.click(QStringLiteral("Fit"));
    EXPECT_TRUE(test::QuickStage::until([&] { return colourAt(0.3) == QColor(120, 110, 90); }));
}

TEST_F(FilmEditorWindowTest, PastesOntoStoredEditsAndOpenEditorsAndTakesItBack) {
    open();
    FilmPaste paste(services_, *controller_);
    QStringList told;
    bool canUndo = false;
    QObject::connect(&paste, &FilmPaste::finished, &paste, [&](const QString& message, bool undoable) {
        told += message;
        canUndo = undoable;
    });
    const auto other = photo("IMG_2.dng");
    QGuiApplication::clipboard()->setText(QStringLiteral("no look"));
    paste.paste({other});
    EXPECT_THAT(told.value(0).toStdString(), testing::HasSubstr("clipboard holds no film adjustments"));
    EXPECT_TRUE(services_.saves.empty());

    const FilmSettings look{.stock = FilmStock::mono400, .exposure = 1.5};
    QGuiApplication::clipboard()->setText(QString::fromStdString(lookText({"", look})));
    services_.snapshot.settings.grain = 0.9; // what the other photo's edit holds
    const auto answerSaves = [&](std::size_t count) {
        ASSERT_TRUE(test::QuickStage::until([&] { return services_.saves.size() >= count; }));
        services_.saves.back().answer();
    };
    paste.paste({photo(), other});
    ASSERT_NO_FATAL_FAILURE(answerSaves(1));
    ASSERT_TRUE(test::QuickStage::until([&] { return told.size() == 2; }));
    EXPECT_EQ(told[1], QStringLiteral("Film adjustments pasted onto 2 photos. Originals unchanged."));
    EXPECT_EQ(services_.saves[0].settings, look) << "of the photo without an editor";
    EXPECT_EQ(controller_->editor(photo())->settings(), look) << "the open editor shows it";
    EXPECT_TRUE(controller_->editor(photo())->canUndo());

    ASSERT_TRUE(canUndo);
    paste.undo();
    ASSERT_TRUE(test::QuickStage::until(
        [&] { return !services_.saves.empty() && services_.saves.back().settings.grain == 0.9; }));
    services_.saves.back().answer();
    ASSERT_TRUE(test::QuickStage::until([&] { return told.size() == 3; }));
    EXPECT_TRUE(controller_->editor(photo())->isDefault());

    paste.paste({other});
    ASSERT_TRUE(test::QuickStage::until([&] {
        return services_.saves.back().settings == look &&
               !services_.saves.back().promise->future().isFinished();
    }));
    services_.saves.back().fail(std::make_exception_ptr(std::runtime_error("The disk is full.")));
    ASSERT_TRUE(test::QuickStage::until([&] { return told.size() == 4; }));
    EXPECT_EQ(told[3], QStringLiteral("Film adjustments pasted onto 0 photos. Originals unchanged. 1 failed: "
                                      "IMG_2.dng: The disk is full."));
    EXPECT_FALSE(canUndo);
}

TEST_F(FilmEditorWindowTest, ComparesWithTheOriginal) {
    open();
    stage_.item(QStringLiteral("Film preview"))->forceActiveFocus();
    QTest::keyPress(&stage_.window(), Qt::Key_Backslash);
    EXPECT_TRUE(stage_.has(QStringLiteral("Original photo")));
    QTest::keyRelease(&stage_.window(), Qt::Key_Backslash);
    EXPECT_TRUE(stage_.has(QStringLiteral("Film preview")));
    stage_.click(QStringLiteral("Original"));
    EXPECT_TRUE(stage_.has(QStringLiteral("Original photo")));
    EXPECT_EQ(services_.previews.size(), 1u);
}

} // namespace
} // namespace lumisort::film
