#include "film/render/FilmRenderEngine.h"

#include "film/render/FilmRenderError.h"
#include "film/render/Renderings.h"
#include "platform/files/FileError.h"
#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "support/DngFile.h"
#include "support/MemoryFileSystem.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace lumisort::film::test {

namespace {

using lumisort::test::MemoryFileSystem;
using lumisort::test::TemporaryFolder;
using lumisort::test::TestCamera;

files::FileUrl url(const std::string& path) {
    return files::FileUrl::fromPath(path);
}

/// An engine over a file system in memory, with a photo that is a chart of a size.
struct Darkroom {
    explicit Darkroom(int width = 120, int height = 80) {
        system.write("/photos/a.dng", "sensor data");
        system.makeFolder("/prints");
        load = [this, width, height](const files::FileUrl& photo, SourceScale scale, FilmInputs inputs,
                                     const std::stop_token&) -> FilmSource {
            checkSourceName(photo, inputs);
            ++(scale == SourceScale::preview ? previewLoads : fullLoads);
            return {chart(width, height), 2 * width, 2 * height, true};
        };
    }

    MemoryFileSystem system;
    FilmRenderEngine::Load load;
    int previewLoads = 0, fullLoads = 0;
    FilmRenderEngine engine{FilmInputs::raw, system,
                            [this](const auto&... arguments) { return load(arguments...); }};
};

template <class Work>
std::optional<FilmRenderProblem> problemOf(const Work& work) {
    try {
        work();
    } catch (const FilmRenderError& error) {
        return error.problem();
    }
    return std::nullopt;
}

TEST(FilmRenderEngine, ChecksTheDestinationBeforeItDevelops) {
    using enum FilmRenderProblem;
    struct Case {
        const char *photo, *destination;
        FilmRenderProblem problem;
    };
    for (const auto& [photo, destination, problem] : {
             Case{"/photos/a.dng", "/prints/folder/", invalidDestination},
             Case{"/photos/a.dng", "/prints/a.png", tiffRequired},
             Case{"/photos/a.dng", "/photos/a.dng", tiffRequired},
             Case{"/photos/a.dng", "/prints/link.tif", sourceOverwrite},
             Case{"/photos/a.dng", "/prints/taken.TIF", outputExists},
             Case{"/photos/a.dng", "/prints/dangling.tif", outputExists},
             Case{"/photos/a.jpg", "/prints/a.tiff", rawRequired},
         }) {
        Darkroom room;
        room.system.write("/photos/a.jpg", "jpeg");
        room.system.write("/prints/taken.TIF", "someone's");
        room.system.makeLink("/prints/link.tif", "/photos/a.dng");
        room.system.makeLink("/prints/dangling.tif", "/nowhere");
        const auto before = room.system.filesBelow("/");
        EXPECT_EQ(problemOf([&] { room.engine.exportPhoto(url(photo), {}, url(destination)); }), problem)
            << destination;
        EXPECT_EQ(room.fullLoads, 0);
        EXPECT_EQ(room.system.filesBelow("/"), before);
    }
}

TEST(FilmRenderEngine, LeavesNothingBehindWhereverTheDiskFails) {
    std::optional<std::string> whole;
    for (std::size_t n = 0;; ++n) {
        Darkroom room(70, 40);
        room.system.failAt(n, ENOSPC);
        bool thrown = false;
        try {
            room.engine.exportPhoto(url("/photos/a.dng"), {}, url("/prints/a.tif"));
        } catch (const files::FileError&) {
            thrown = true;
        }
        if (!room.system.faultMet()) {
            ASSERT_FALSE(thrown);
            whole = room.system.contents("/prints/a.tif");
            break;
        }
        // Past the move only the flush of the folder can fail; the print is whole then.
        const auto written = room.system.contents("/prints/a.tif");
        EXPECT_TRUE(!written || written->size() > 8u * 70 * 40) << n;
        for (const auto& file : room.system.filesBelow("/prints")) EXPECT_EQ(file, "/prints/a.tif") << n;
    }
    ASSERT_TRUE(whole);
    EXPECT_GT(whole->size(), 8u * 70 * 40);
}

TEST(FilmRenderEngine, StopsAnExportWithoutATrace) {
    Darkroom room(1500, 1300);
    std::stop_source stop;
    EXPECT_THROW(room.engine.exportPhoto(
                     url("/photos/a.dng"), {}, url("/prints/a.tif"), [&](double) { stop.request_stop(); },
                     stop.get_token()),
                 tasks::Cancelled);
    EXPECT_THAT(room.system.filesBelow("/prints"), testing::IsEmpty());
    std::stop_source early;
    early.request_stop();
    EXPECT_THROW(room.engine.preview(url("/photos/a.dng"), {}, early.get_token()), tasks::Cancelled);
    EXPECT_EQ(room.previewLoads, 0);
}

TEST(FilmRenderEngine, DevelopsAPreviewOnceUntilTheFileChanges) {
    Darkroom room;
    const auto photo = url("/photos/a.dng");
    const auto first = room.engine.preview(photo, {});
    EXPECT_EQ(first.originalWidth, 240);
    room.engine.preview(photo, {.grain = 1});
    room.engine.draft(photo, {}, 60);
    EXPECT_EQ(room.previewLoads, 1);
    room.engine.exportPhoto(photo, {}, url("/prints/a.tif"));
    EXPECT_EQ(room.fullLoads, 1);
    room.system.write("/photos/a.dng", "other data");
    room.engine.preview(photo, {});
    EXPECT_EQ(room.previewLoads, 2);
}

TEST(FilmRenderEngine, RedoesOnlyTheStagesThatASettingShapes) {
    Darkroom room;
    const auto photo = url("/photos/a.dng");
    const auto stagesRedone = [&](const FilmSettings& settings) {
        std::array<std::int64_t, 7> before{};
        for (std::size_t i = 0; i < 7; ++i) before[i] = room.engine.stageTimes()[i];
        room.engine.preview(photo, settings);
        std::vector<std::string_view> redone;
        for (std::size_t i = 0; i < 7; ++i)
            if (room.engine.stageTimes()[i] != before[i]) redone.push_back(filmStages()[i].name);
        return redone;
    };
    EXPECT_THAT(stagesRedone({}), testing::SizeIs(7));
    EXPECT_THAT(stagesRedone({.printExposure = 1}), testing::ElementsAre("print", "paper"));
    EXPECT_THAT(stagesRedone({.printExposure = 1, .grain = 1}),
                testing::ElementsAre("grain", "negative", "print", "paper"));
    EXPECT_THAT(stagesRedone({.exposure = 1, .printExposure = 1, .grain = 1}), testing::SizeIs(7));
    // What is kept must not show: the same settings from an engine without a past.
    Darkroom fresh;
    const FilmSettings settings{.printExposure = -1, .halation = 1};
    const auto kept = room.engine.preview(photo, settings), made = fresh.engine.preview(photo, settings);
    EXPECT_TRUE(std::ranges::equal(kept.film.rgba(), made.film.rgba()));
}

TEST(FilmRenderEngine, ReducesPreviewsByOneFactor) {
    Darkroom room(3200, 2133);
    const auto preview = room.engine.preview(url("/photos/a.dng"), {});
    EXPECT_EQ(preview.film.width(), 1600);
    EXPECT_EQ(preview.film.height(), 1066);
    EXPECT_EQ(preview.original.width(), 1600);
    EXPECT_EQ(preview.original.height(), 1066);
    for (const int longEdge : {1, 7, 60, 511, 801}) {
        const auto draft = room.engine.draft(url("/photos/a.dng"), {}, longEdge);
        EXPECT_EQ(draft.width(), longEdge);
        EXPECT_EQ(draft.height(), std::max(1, 2133 * longEdge / 3200));
    }
}

/// The 16-bit codes of an exported TIFF, which are the file's last bytes.
std::vector<std::uint16_t> codesOf(const std::string& tiff, int width, int height) {
    std::vector<std::uint16_t> codes(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::memcpy(codes.data(), tiff.data() + tiff.size() - 2 * codes.size(), 2 * codes.size());
    return codes;
}

TEST(FilmRenderEngine, ShowsTheExportsOwnPixelsInADetail) {
    const int width = 1100, height = 1234;
    Darkroom room(width, height);
    const FilmSettings settings{.grain = 1, .halation = 1, .colorSeparation = 1};
    room.engine.exportPhoto(url("/photos/a.dng"), settings, url("/prints/a.tif"));
    const auto codes = codesOf(*room.system.contents("/prints/a.tif"), width, height);
    const Rectangle part{517, 490, 300, 60};
    const auto detail = room.engine.detail(url("/photos/a.dng"), settings, part);
    ASSERT_EQ(detail.width(), 300);
    for (int y = 0; y < part.height; ++y)
        for (int x = 0; x < part.width; ++x)
            for (int c = 0; c < 3; ++c) {
                const int whole = codes[4 * static_cast<std::size_t>((part.y + y) * width + part.x + x) +
                                        static_cast<std::size_t>(c)];
                const int shown = detail.rgba()[4 * static_cast<std::size_t>(y * part.width + x) +
                                                static_cast<std::size_t>(c)];
                ASSERT_NEAR(shown, whole / 257.0, 0.502); // both are rounded from one number
            }
}

TEST(FilmRenderEngine, PrintsACameraRawAsATiffThatOthersRead) {
    const TemporaryFolder folder;
    const auto photo = TestCamera{.orientation = 6}.photograph(folder, "a.dng", 640, 480, [](int x, int y) {
        return lumisort::test::Light{0.1 + 0.5 * x / 640, 0.2 + 0.3 * y / 480, 0.25};
    });
    FilmRenderEngine engine;
    const auto destination = url((folder.path() / "a.tif").string());
    const FilmSettings settings{.grain = 0.5};
    engine.exportPhoto(photo, settings, destination);
    const auto preview = engine.preview(photo, settings);
    EXPECT_TRUE(preview.isRAW);
    const auto properties = images::decoder().properties(destination);
    EXPECT_EQ(properties.width, 480);
    EXPECT_EQ(properties.height, 640);
    const auto read = images::decoder().thumbnail(destination, 640);
    ASSERT_EQ(read.rgba().size(), preview.film.rgba().size());
    for (std::size_t c = 0; c < 3; ++c) {
        double exported = 0, previewed = 0;
        for (std::size_t i = c; i < read.rgba().size(); i += 4) {
            exported += read.rgba()[i];
            previewed += preview.film.rgba()[i];
        }
        EXPECT_NEAR(exported, previewed, static_cast<double>(read.rgba().size()) / 4)
            << "one code in the mean";
    }
}

/// Writes a value over that of a TIFF tag of type SHORT or LONG with one value, wherever its directory is.
void patch(std::string& tiff, std::uint16_t tag, std::uint32_t value) {
    for (const char type : {'\3', '\4'}) {
        const std::string entry{
            static_cast<char>(tag & 0xff), static_cast<char>(tag >> 8), type, 0, 1, 0, 0, 0};
        const auto at = tiff.rfind(entry); // libtiff writes the directory behind the pixels
        if (at == std::string::npos) continue;
        for (int i = 0; i < (type == '\3' ? 2 : 4); ++i)
            tiff[at + 8 + static_cast<std::size_t>(i)] = static_cast<char>(value >> 8 * i);
        return;
    }
    FAIL() << "no tag " << tag;
}

TEST(FilmRenderEngine, SaysWhatIsWrongWithASource) {
    using enum FilmRenderProblem;
    const TemporaryFolder folder;
    const auto jpeg = images::decoder().encodeJpeg(
        images::Bitmap(2, 1, std::array<std::uint8_t, 8>{0, 0, 0, 255, 9, 9, 9, 255}), 90);
    const auto url = TestCamera{}.photograph(
        folder, "whole.dng", 64, 48, [](int x, int) { return lumisort::test::Light{0.2, 0.004 * x, 0.2}; });
    std::ifstream stream(url.path(), std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(stream), {}};
    const auto sized = [&](std::uint32_t width, std::uint32_t height) {
        auto contents = whole;
        patch(contents, 256, width);
        patch(contents, 257, height);
        return contents;
    };
    auto beyondTheEnd = whole;
    patch(beyondTheEnd, 273, static_cast<std::uint32_t>(whole.size()) - 1000);
    struct Case {
        const char* name;
        std::string contents;
        FilmRenderProblem problem;
    };
    FilmRenderEngine engine;
    for (const auto& [name, contents, problem] :
         {Case{"jpeg.nef", jpeg, rawRequired}, Case{"raw.jpg", whole, rawRequired},
          Case{"nothing.dng", "", unreadable}, Case{"text.cr2", "no photo", unreadable},
          Case{"cut.dng", whole.substr(0, 1500), unreadable}, Case{"hollow.dng", beyondTheEnd, unreadable},
          // Said by the header alone: neither has that many pixels.
          Case{"wide.dng", sized(40'000, 100), imageTooLarge},
          Case{"large.dng", sized(10'001, 8'000), imageTooLarge},
          Case{"absurd.dng", sized(60'000, 60'000), imageTooLarge},
          Case{"largest.dng", sized(10'000, 8'000), unreadable}}) {
        const auto photo = folder.write(name, contents);
        EXPECT_EQ(problemOf([&] { engine.preview(photo, {}); }), problem) << name;
        EXPECT_EQ(problemOf([&] { engine.exportPhoto(photo, {}, folder.url().child("a.tif")); }), problem)
            << name;
        EXPECT_FALSE(std::filesystem::exists(folder.path() / "a.tif"));
    }
    EXPECT_EQ(problemOf([&] { engine.preview(folder.url().child("absent.jpg"), {}); }), rawRequired)
        << "by its name alone";
    EXPECT_THROW(engine.preview(folder.url().child("absent.dng"), {}), files::FileError);
}

} // namespace

} // namespace lumisort::film::test
