#include "film/editor/FilmEditorModel.h"

#include "film/editor/FakeServices.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <stdexcept>

namespace lumisort::film {
namespace {

const auto photo = files::FileUrl::fromPath("/photos/IMG_1.dng");
const auto target = QUrl(QStringLiteral("file:///out/IMG_1-film.tif"));

class FilmEditorModelTest : public testing::Test {
protected:
    FilmEditorModelTest() {
        services_.snapshot.stamp.size = services_.fileStamp.size = 7;
        make();
    }

    ~FilmEditorModelTest() override {
        editor_.reset();
        services_.cancelPending();
        settle();
    }

    void make() {
        editor_ = std::make_unique<FilmEditorModel>(photo, services_, nullptr,
                                                    [this](auto) { return services_.sleep(); });
    }
    static void settle() {
        for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    }
    /// Ends every debounce that is waiting.
    void rest() {
        for (const auto& sleep : std::exchange(services_.sleeps, {})) sleep->finish();
        settle();
    }
    EditorPreview picture(int width = 4) {
        QImage image(width, 2, QImage::Format_RGBX8888);
        image.fill(Qt::gray);
        return {image, image, QSize(6000, 4000), true};
    }
    void open() {
        editor_->start();
        settle();
        rest();
        services_.previews.back().answer(picture());
        settle();
    }
    void setExposure(double exposure) {
        auto settings = editor_->settings();
        settings.exposure = exposure;
        editor_->change(settings, 0);
    }

    FakeServices services_;
    std::unique_ptr<FilmEditorModel> editor_;
};

std::exception_ptr failure(const char* text) {
    return std::make_exception_ptr(std::runtime_error(text));
}

TEST_F(FilmEditorModelTest, LoadsThenShowsThePreview) {
    services_.snapshot.settings.exposure = 1.5;
    EXPECT_TRUE(editor_->isRendering());
    EXPECT_FALSE(editor_->isEditable());
    editor_->start();
    settle();
    EXPECT_TRUE(editor_->isLoaded());
    EXPECT_TRUE(services_.previews.empty()) << "the debounce has not passed";
    rest();
    ASSERT_EQ(services_.previews.size(), 1u);
    EXPECT_EQ(services_.previews[0].settings.exposure, 1.5);
    services_.previews[0].answer(picture());
    settle();
    EXPECT_TRUE(editor_->hasPreview());
    EXPECT_FALSE(editor_->isRendering());
    EXPECT_TRUE(services_.saves.empty()) << "loading changes nothing";
}

TEST_F(FilmEditorModelTest, RendersAndSavesABurstOfChangesOnce) {
    open();
    for (int i = 1; i <= 10; ++i) setExposure(i / 10.0);
    rest();
    ASSERT_EQ(services_.saves.size(), 1u);
    EXPECT_EQ(services_.saves[0].settings.exposure, 1.0);
    EXPECT_EQ(services_.previews.size(), 1u) << "the render waits for the save";
    services_.saves[0].answer();
    settle();
    ASSERT_EQ(services_.previews.size(), 2u);
    EXPECT_EQ(services_.previews[1].settings.exposure, 1.0);
}

TEST_F(FilmEditorModelTest, DropsAResultThatAnOlderRequestBrings) {
    open();
    setExposure(1);
    rest();
    services_.saves[0].answer();
    settle();
    setExposure(2);
    EXPECT_TRUE(services_.previews[1].stop.stop_requested());
    services_.previews[1].answer(picture(8));
    settle();
    EXPECT_EQ(editor_->preview()->film.width(), 4);
    EXPECT_TRUE(editor_->isRendering());
}

TEST_F(FilmEditorModelTest, FollowsTheSliderWithDraftsThatThePreviewReplaces) {
    open();
    setExposure(1);
    setExposure(2);
    setExposure(3);
    ASSERT_EQ(services_.drafts.size(), 1u) << "one at a time";
    services_.drafts[0].answer(picture(3).film);
    settle();
    EXPECT_EQ(editor_->draft().width(), 3);
    ASSERT_EQ(services_.drafts.size(), 2u);
    EXPECT_EQ(services_.drafts[1].settings.exposure, 3.0) << "of those that wait only the latest";
    rest();
    services_.saves.back().answer();
    settle();
    services_.previews.back().answer(picture(16));
    settle();
    EXPECT_TRUE(editor_->draft().isNull());
    services_.drafts[1].answer(picture(2).film);
    settle();
    EXPECT_TRUE(editor_->draft().isNull()) << "a late draft never covers the preview of its settings";
    EXPECT_EQ(editor_->preview()->film.width(), 16);
}

TEST_F(FilmEditorModelTest, IgnoresWhatChangesNothing) {
    open();
    editor_->change(editor_->settings(), 0);
    editor_->setShowsOriginal(true);
    editor_->reset();
    rest();
    EXPECT_EQ(services_.previews.size(), 1u);
    EXPECT_TRUE(services_.saves.empty());
}

TEST_F(FilmEditorModelTest, StopsEditingWhenTheFileChanged) {
    open();
    services_.fileStamp.size = 8;
    setExposure(1);
    rest();
    EXPECT_TRUE(editor_->sourceChanged());
    EXPECT_FALSE(editor_->isEditable());
    EXPECT_EQ(editor_->errorMessage(),
              QStringLiteral("This photo changed on disk. Reload it before making further adjustments or "
                             "exporting."));
    setExposure(2);
    rest();
    EXPECT_EQ(services_.previews.size(), 1u);
    services_.snapshot.stamp = services_.fileStamp;
    editor_->reload();
    EXPECT_FALSE(editor_->hasPreview());
    settle();
    rest();
    services_.previews.back().answer(picture(5));
    settle();
    EXPECT_FALSE(editor_->sourceChanged());
    EXPECT_EQ(editor_->preview()->film.width(), 5);
}

TEST_F(FilmEditorModelTest, ShowsNothingThatWasRenderedFromAFileThatChangedMeanwhile) {
    open();
    setExposure(1);
    rest();
    services_.saves[0].answer();
    settle();
    services_.fileStamp.size = 8;
    services_.previews[1].answer(picture(8));
    settle();
    EXPECT_EQ(editor_->preview()->film.width(), 4);
    EXPECT_TRUE(editor_->sourceChanged());
}

TEST_F(FilmEditorModelTest, RendersAndStaysUnsavedWhereTheStoreFails) {
    open();
    setExposure(1);
    rest();
    services_.saves[0].fail(failure("The disk is full."));
    settle();
    EXPECT_EQ(editor_->errorMessage(), QStringLiteral("Adjustments could not be saved. The disk is full."));
    ASSERT_EQ(services_.previews.size(), 2u);
    editor_->close();
    EXPECT_EQ(services_.saves.size(), 2u) << "closing tries again";
}

TEST_F(FilmEditorModelTest, NeverWritesAStoreThatItCouldNotRead) {
    services_.snapshot.persistenceWarning = "Saved film adjustments use an unsupported format.";
    open();
    EXPECT_EQ(editor_->errorMessage(),
              QStringLiteral("Saved adjustments could not be loaded. You can preview and export, but changes "
                             "in this window will not be saved. Saved film adjustments use an unsupported "
                             "format."));
    setExposure(1);
    rest();
    EXPECT_EQ(services_.previews.size(), 2u);
    editor_->close();
    EXPECT_TRUE(services_.saves.empty());
}

TEST_F(FilmEditorModelTest, OffersARetryWhereLoadingFails) {
    services_.loadFailure = failure("\"IMG_1.dng\" cannot be read.");
    editor_->start();
    settle();
    EXPECT_FALSE(editor_->isRendering());
    EXPECT_FALSE(editor_->isLoaded());
    EXPECT_EQ(editor_->errorMessage(), QStringLiteral("\"IMG_1.dng\" cannot be read."));
    services_.loadFailure = nullptr;
    editor_->reload();
    settle();
    EXPECT_TRUE(editor_->isLoaded());
    EXPECT_TRUE(editor_->errorMessage().isEmpty());
}

TEST_F(FilmEditorModelTest, ExportsAndRendersThePreviewThatItCancelled) {
    open();
    setExposure(1);
    editor_->exportPhoto();
    EXPECT_TRUE(editor_->isExporting());
    editor_->finishSavePanel(target);
    settle();
    rest();
    services_.saves.at(0).answer();
    settle();
    ASSERT_EQ(services_.exports.size(), 1u);
    EXPECT_EQ(services_.exports[0].settings.exposure, 1.0);
    EXPECT_EQ(services_.previews.size(), 1u) << "the pending preview was cancelled";
    services_.exports[0].answer();
    settle();
    EXPECT_EQ(editor_->exportedURL(), target);
    EXPECT_FALSE(editor_->isExporting());
    rest();
    ASSERT_EQ(services_.previews.size(), 2u);
    services_.previews[1].answer(picture());
    settle();
    editor_->exportPhoto();
    editor_->finishSavePanel(target);
    settle();
    services_.saves.at(1).answer();
    settle();
    services_.exports[1].answer();
    settle();
    rest();
    EXPECT_EQ(services_.previews.size(), 2u) << "a preview of these settings is on show";
}

TEST_F(FilmEditorModelTest, SaysWhyAnExportFailedAndGoesOn) {
    open();
    editor_->exportPhoto();
    editor_->finishSavePanel({});
    EXPECT_FALSE(editor_->isExporting()) << "cancelled in the panel";
    editor_->exportPhoto();
    editor_->finishSavePanel(target);
    settle();
    services_.saves.at(0).answer();
    settle();
    services_.exports.at(0).fail(failure("There is no space left."));
    settle();
    EXPECT_EQ(editor_->errorMessage(), QStringLiteral("There is no space left."));
    EXPECT_TRUE(editor_->exportedURL().isEmpty());
    EXPECT_TRUE(editor_->canExport());
}

TEST_F(FilmEditorModelTest, AppliesNothingAfterItClosedAndSavesOnce) {
    open();
    setExposure(1);
    rest();
    services_.saves[0].answer();
    settle();
    setExposure(2);
    editor_->close();
    editor_->close();
    EXPECT_EQ(services_.saves.size(), 2u);
    EXPECT_EQ(services_.saves[1].settings.exposure, 2.0);
    services_.previews[1].answer(picture(8));
    services_.drafts[0].answer(picture(3).film);
    settle();
    EXPECT_EQ(editor_->preview()->film.width(), 4);
    EXPECT_TRUE(editor_->draft().isNull());
}

TEST_F(FilmEditorModelTest, MayGoAtAnyMoment) {
    // One step further each time: whatever is pending then must not touch a model that is gone.
    for (int step = 0; step < 6; ++step) {
        services_.cancelPending();
        services_.previews.clear();
        services_.saves.clear();
        services_.drafts.clear();
        make();
        editor_->start();
        if (step > 0) settle();
        if (step > 1) rest();
        if (step > 2) services_.previews.back().answer(picture());
        if (step > 3) settle();
        if (step > 4) {
            setExposure(1);
            rest();
        }
        editor_.reset();
        rest();
        for (const auto& save : services_.saves) save.answer();
        for (const auto& draft : services_.drafts) draft.answer(picture(3).film);
        if (step == 2) services_.previews.back().answer(picture());
        settle();
    }
}

TEST_F(FilmEditorModelTest, KeepsTheFullSourceForAWhileAfterActualPixelsButNotAfterItsWindow) {
    open();
    editor_->showDetail(QRect(0, 0, 100, 100));
    editor_->showDetail({});
    settle();
    EXPECT_EQ(services_.detailsForgotten, 0) << "who looked at the whole photo comes back";
    editor_->close();
    EXPECT_EQ(services_.detailsForgotten, 1);
}

TEST_F(FilmEditorModelTest, UndoesOneDragAsOneStep) {
    open();
    for (double exposure : {0.1, 0.2, 0.3}) setExposure(exposure);
    editor_->seal();
    for (double exposure : {0.6, 0.9}) setExposure(exposure);
    editor_->undo();
    EXPECT_EQ(editor_->settings().exposure, 0.3);
    editor_->undo();
    EXPECT_EQ(editor_->settings().exposure, 0.0);
    EXPECT_FALSE(editor_->canUndo());
    editor_->redo();
    editor_->redo();
    EXPECT_EQ(editor_->settings().exposure, 0.9);
    editor_->reset();
    editor_->undo();
    EXPECT_EQ(editor_->settings().exposure, 0.9);
    EXPECT_FALSE(editor_->canRedo() && editor_->settings().exposure == 0);
}

} // namespace
} // namespace lumisort::film
