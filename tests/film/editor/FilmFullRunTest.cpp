// The film editor over real files: its own services, store and engine.

#include "film/editor/FilmEditorController.h"
#include "film/editor/LocalFilmServices.h"
#include "film/editor/LookList.h"
#include "platform/images/Decoder.h"
#include "support/FatVolume.h"
#include "support/TemporaryFolder.h"
#include "support/quick/QuickStage.h"
#include "ui/IconProvider.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace lumisort::film {
namespace {

namespace fs = std::filesystem;
using test::QuickStage;
using testing::HasSubstr;

std::string contentsOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class FilmFullRunTest : public testing::Test {
protected:
    void SetUp() override {
        LUMISORT_NEEDS_CORPUS();
        stage_.engine().addImportPath(QStringLiteral("qrc:/qt/qml"));
        stage_.engine().addImageProvider(QStringLiteral("icon"), new ui::IconProvider);
        fs::create_directory(folder_.path() / "photos");
        fs::copy_file(*test::corpus() / "raw" / "canon_eos_6d.dng", file_);
        restart();
    }
    void TearDown() override { controller_.reset(); }

    /// As if the program had been ended and started.
    void restart() {
        controller_.reset();
        services_ = std::make_unique<LocalFilmServices>(
            files::FileSystem::real(),
            files::FileUrl::fromPath((folder_.path() / "library" / "library.json").string()));
        controller_ = std::make_unique<FilmEditorController>(*services_, stage_.engine());
    }
    void show() {
        controller_->show(photo_);
        stage_.moveTo(*controller_->window(photo_));
    }
    FilmEditorModel& editor() { return *controller_->editor(photo_); }
    /// Waits for the preview, or whatever ends the rendering.
    void settle() {
        for (int i = 0; i < 6 && editor().isRendering(); ++i)
            QuickStage::until([this] { return !editor().isRendering(); });
        ASSERT_FALSE(editor().isRendering());
        stage_.settle();
    }
    void expose(double stops) {
        auto settings = editor().settings();
        settings.exposure = stops;
        editor().change(settings, 0);
    }
    void exportTo(const fs::path& destination) {
        editor().exportPhoto();
        editor().finishSavePanel(QUrl::fromLocalFile(QString::fromStdString(destination.string())));
        for (int i = 0; i < 6 && editor().isExporting(); ++i)
            QuickStage::until([this] { return !editor().isExporting(); });
        ASSERT_FALSE(editor().isExporting());
    }
    std::string message() { return editor().errorMessage().toStdString(); }

    test::TemporaryFolder folder_;
    const fs::path file_ = folder_.path() / "photos" / "IMG_1.dng";
    const fs::path store_ = folder_.path() / "library" / "film-edits.json";
    const files::FileUrl photo_ = files::FileUrl::fromPath(file_.string());
    test::QuickStage stage_;
    std::unique_ptr<LocalFilmServices> services_;
    std::unique_ptr<FilmEditorController> controller_;
};

std::array<double, 3> meanOf(const QImage& picture) {
    std::array<double, 3> sum{};
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const auto colour = picture.pixel(x, y);
            sum[0] += qRed(colour), sum[1] += qGreen(colour), sum[2] += qBlue(colour);
        }
    for (double& value : sum) value /= static_cast<double>(picture.width()) * picture.height();
    return sum;
}

TEST_F(FilmFullRunTest, FromOpeningToATiffAndBackNextWeek) {
    const auto original = contentsOf(file_);
    show();
    ASSERT_NO_FATAL_FAILURE(settle());
    EXPECT_TRUE(stage_.has(QStringLiteral("Developed from RAW sensor data")));
    stage_.item(QStringLiteral("Exposure"))->forceActiveFocus(Qt::TabFocusReason);
    for (int i = 0; i < 10; ++i) stage_.key(Qt::Key_Right);
    ASSERT_NO_FATAL_FAILURE(settle());
    EXPECT_THAT(contentsOf(store_), HasSubstr("\"exposure\":0.5"));

    // Through the window's own panel.
    stage_.key(Qt::Key_E, Qt::ControlModifier);
    ASSERT_TRUE(QuickStage::until([this] { return stage_.has(QStringLiteral("Name")); }));
    stage_.key(Qt::Key_Return);
    for (int i = 0; i < 6 && !stage_.has(QStringLiteral("Show")); ++i)
        QuickStage::until([this] { return stage_.has(QStringLiteral("Show")); });
    const auto destination = folder_.path() / "photos" / "IMG_1-film.tif";
    EXPECT_EQ(editor().exportedURL(), QUrl::fromLocalFile(QString::fromStdString(destination.string())));
    const auto url = files::FileUrl::fromPath(destination.string());
    const auto properties = images::decoder().properties(url);
    const auto size = editor().preview()->originalSize;
    EXPECT_EQ(properties.width, size.width());
    EXPECT_EQ(properties.height, size.height());
    const auto print = images::decoder().thumbnail(url, std::max(size.width(), size.height()));
    const auto exported =
        meanOf(QImage(print.rgba().data(), print.width(), print.height(), QImage::Format_RGBA8888));
    const auto shown = meanOf(editor().preview()->film);
    for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(exported[c], shown[c], 1);

    // Moved in the last moment, and closed before any preview.
    expose(-1.25);
    controller_->window(photo_)->close();
    stage_.settle();
    restart();
    show();
    ASSERT_NO_FATAL_FAILURE(settle());
    EXPECT_EQ(editor().settings().exposure, -1.25);
    EXPECT_EQ(contentsOf(file_), original);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.path() / "photos"))
        names.push_back(entry.path().filename());
    EXPECT_THAT(names, testing::UnorderedElementsAre("IMG_1.dng", "IMG_1-film.tif"));
}

TEST_F(FilmFullRunTest, SaysWhatHappenedToThePhotoAndGoesOnWithWhatIsThere) {
    const auto whole = contentsOf(file_);
    struct Case {
        const char* what;
        std::function<void()> harm;
        const char* message;
        bool reloads;
    };
    const auto write = [this](const std::string& contents) {
        fs::remove(file_);
        std::ofstream(file_, std::ios::binary) << contents;
    };
    for (const auto& [what, harm, words, reloads] :
         {Case{"deleted", [&] { fs::remove(file_); }, "IMG_1.dng", false},
          Case{"renamed", [&] { fs::rename(file_, folder_.path() / "photos" / "other.dng"); }, "IMG_1.dng",
               false},
          Case{"replaced by the same", [&] { write(whole); }, "This photo changed on disk.", true},
          Case{"cut short", [&] { write(whole.substr(0, whole.size() / 2)); }, "This photo changed on disk.",
               false},
          Case{"replaced by text", [&] { write("no photo"); }, "This photo changed on disk.", false}}) {
        SCOPED_TRACE(what);
        write(whole);
        show();
        ASSERT_NO_FATAL_FAILURE(settle());
        ASSERT_TRUE(editor().hasPreview());
        harm();
        expose(0.7);
        ASSERT_NO_FATAL_FAILURE(settle());
        EXPECT_THAT(message(), HasSubstr(words));
        ASSERT_NO_FATAL_FAILURE(exportTo(folder_.path() / "a.tif"));
        EXPECT_FALSE(fs::exists(folder_.path() / "a.tif"));
        editor().reload();
        ASSERT_NO_FATAL_FAILURE(settle());
        EXPECT_EQ(editor().hasPreview(), reloads);
        EXPECT_EQ(message().empty(), reloads) << message();
        // What was there comes back.
        write(whole);
        editor().reload();
        ASSERT_NO_FATAL_FAILURE(settle());
        EXPECT_TRUE(editor().hasPreview());
        controller_->window(photo_)->close();
        stage_.settle();
    }
}

TEST_F(FilmFullRunTest, EditsAndExportsWhereTheStoreCannotBeReadOrWritten) {
    struct Case {
        const char* what;
        std::function<void()> harm;
        const char* message;
        bool atOpening;
    };
    const auto write = [this](const char* contents) {
        fs::remove_all(store_);
        fs::create_directories(store_.parent_path());
        std::ofstream(store_) << contents;
    };
    for (const auto& [what, harm, words, atOpening] :
         {Case{"another version", [&] { write(R"({"photos":{},"version":99})"); },
               "changes in this window will not be saved", true},
          Case{"truncated", [&] { write(R"({"photos":{"/a)"); }, "changes in this window will not be saved",
               true},
          Case{"a file in the folder's place",
               [&] {
                   fs::remove_all(store_.parent_path());
                   std::ofstream(store_.parent_path()) << "no folder";
               },
               "Adjustments could not be saved. ", false}}) {
        SCOPED_TRACE(what);
        harm();
        const auto before = fs::is_regular_file(store_) ? contentsOf(store_) : std::string();
        restart();
        show();
        ASSERT_NO_FATAL_FAILURE(settle());
        if (atOpening) {
            EXPECT_THAT(message(), HasSubstr(words));
        }
        editor().dismissError();
        expose(0.7);
        ASSERT_NO_FATAL_FAILURE(settle());
        EXPECT_EQ(atOpening, message().empty());
        if (!atOpening) {
            EXPECT_THAT(message(), HasSubstr(words));
        }
        EXPECT_TRUE(editor().hasPreview());
        const auto print = folder_.path() / (std::string(what) + ".tif");
        ASSERT_NO_FATAL_FAILURE(exportTo(print));
        EXPECT_GT(fs::file_size(print), 1'000'000u);
        controller_->window(photo_)->close();
        stage_.settle();
        restart(); // the last save is done by then
        EXPECT_EQ(fs::is_regular_file(store_) ? contentsOf(store_) : std::string(), before);
        fs::remove_all(store_.parent_path());
    }
}

TEST_F(FilmFullRunTest, ExportsLooksBesideEachOtherAndImportsThem) {
    show();
    ASSERT_NO_FATAL_FAILURE(settle());
    expose(0.5);
    LookList looks;
    looks.setEditor(&editor());
    const auto count = [&](qsizetype wanted) {
        return QuickStage::until([&] { return looks.names().size() == wanted; });
    };
    looks.save(QStringLiteral("Dusk / soft"));
    ASSERT_TRUE(count(1));
    const auto folder = QUrl::fromLocalFile(QString::fromStdString(folder_.path().string()));
    for (const auto* file : {"Dusk - soft.json", "Dusk - soft-2.json"}) {
        editor().dismissError();
        looks.exportTo(0, folder);
        ASSERT_TRUE(QuickStage::until([&] { return !message().empty(); }));
        EXPECT_EQ(message(), "The look was exported as “" + std::string(file) + "”.");
        EXPECT_TRUE(fs::exists(folder_.path() / file));
    }
    looks.remove(0);
    ASSERT_TRUE(count(0));
    looks.importFrom(
        QUrl::fromLocalFile(QString::fromStdString((folder_.path() / "Dusk - soft.json").string())));
    ASSERT_TRUE(count(1));
    editor().reset();
    looks.apply(0);
    EXPECT_EQ(editor().settings().exposure, 0.5);
}

TEST_F(FilmFullRunTest, NamesTheDestinationOfAFullDisk) {
    const test::FatVolume volume(4);
    LUMISORT_NEEDS_FAT(volume);
    show();
    ASSERT_NO_FATAL_FAILURE(settle());
    ASSERT_NO_FATAL_FAILURE(exportTo(volume.path() + "/print.tif"));
    EXPECT_THAT(message(), testing::AllOf(HasSubstr(volume.path() + "/print.tif"), HasSubstr("No space")));
    EXPECT_TRUE(fs::is_empty(volume.path()));
    EXPECT_TRUE(editor().canExport());
}

} // namespace
} // namespace lumisort::film
