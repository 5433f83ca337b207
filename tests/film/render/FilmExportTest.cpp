#include "film/render/FilmRenderEngine.h"
#include "film/render/FilmRenderError.h"
#include "film/render/Reduction.h"
#include "film/render/Renderings.h"
#include "platform/files/FileError.h"
#include "support/MemoryFileSystem.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <tiffio.h>

#include <cstdio>
#include <filesystem>

namespace lumisort::film::test {

namespace {

using lumisort::test::MemoryFileSystem;

const auto photo = files::FileUrl::fromPath("/photos/a.dng");
const auto print = files::FileUrl::fromPath("/prints/a.tif");

/// An engine whose photo is `scene` at full size, and reduced for previews.
struct Darkroom {
    explicit Darkroom(images::LinearImage scene) : full(std::move(scene)) {
        system.write("/photos/a.dng", "sensor data");
        system.makeFolder("/prints");
    }

    FilmSource load(SourceScale scale) {
        ++loads;
        const int width = full.width(), height = full.height();
        const bool reduces = scale == SourceScale::preview && std::max(width, height) > previewSourceSide;
        auto image =
            reduces ? reduced(full, previewSourceSide, ReductionFilter::area, inOrder, {}) : copyOf(full);
        return {std::move(image), width, height, true};
    }
    static images::LinearImage copyOf(const images::LinearImage& image) {
        return sceneOf(image.width(), image.height(), [&](int x, int y) -> std::array<double, 3> {
            return {image.plane(0).at(x, y), image.plane(1).at(x, y), image.plane(2).at(x, y)};
        });
    }

    images::LinearImage full;
    MemoryFileSystem system;
    int loads = 0;
    FilmRenderEngine engine{FilmInputs::raw, system,
                            [this](const files::FileUrl&, SourceScale scale, FilmInputs,
                                   const std::stop_token&) { return load(scale); }};
};

/// The light of an exported TIFF, whose codes are the file's last bytes.
images::LinearImage lightOf(const std::string& tiff, int width, int height) {
    const std::size_t bytes = 8 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const auto* codes = reinterpret_cast<const std::uint16_t*>(tiff.data() + tiff.size() - bytes);
    return sceneOf(width, height, [&](int x, int y) -> std::array<double, 3> {
        std::array<double, 3> light{};
        for (std::size_t c = 0; c < 3; ++c) {
            const double v = codes[4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                        static_cast<std::size_t>(x)) +
                                   c] /
                             65535.0;
            light[c] = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        }
        return light;
    });
}

/// A picture of 1600 × 400 codes, 0 to 255.
using Codes = std::function<double(int x, int y, int c)>;

/// Left a lamp before the dark, then grey, then colours that change slowly; shares of the sides.
std::array<double, 3> sceneAt(double u, double v) {
    if (u < 0.4) {
        const double distance = std::hypot(u - 0.2, (v - 0.5) / 4);
        const double light = distance < 0.02 ? 40 : 0.004;
        return {light, light, light};
    }
    if (u < 0.7) return {0.18, 0.18, 0.18};
    return {0.1 + 0.3 * v, 0.2, 0.5 - 0.3 * v};
}

double meanOf(const Codes& codes, int c) {
    double sum = 0;
    for (int y = 0; y < 400; ++y)
        for (int x = 0; x < 1600; ++x) sum += codes(x, y, c);
    return sum / (1600 * 400);
}

/// Standard deviation in the grey part, of green.
double grainOf(const Codes& codes) {
    double sum = 0, squares = 0, count = 0;
    for (int y = 20; y < 380; ++y)
        for (int x = 680; x < 1080; ++x) {
            const double code = codes(x, y, 1);
            sum += code, squares += code * code, ++count;
        }
    return std::sqrt(std::max(0.0, squares / count - sum / count * (sum / count)));
}

/// Where, from the lamp's middle outward, red falls below half of what the lamp and the dark differ by; in
/// pixels, with a fraction. A mean of eight directions, for the grain's sake.
double haloRadius(const Codes& codes, double half) {
    double sum = 0;
    for (int direction = 0; direction < 8; ++direction) {
        const double dx = std::cos(direction * 0.785398), dy = std::sin(direction * 0.785398);
        const auto at = [&](double r) {
            return codes(static_cast<int>(std::lround(320 + r * dx)),
                         static_cast<int>(std::lround(200 + r * dy)), 0);
        };
        double r = 0;
        while (r < 150 && at(r) > half) r += 0.25;
        sum += r / 8;
    }
    return sum;
}

TEST(FilmExport, ReducedAgreesWithThePreviewAtEverySizeAndFormat) {
    for (const auto format : {FilmFormat::mm35, FilmFormat::mediumFormat})
        for (const int width : {1700, 2400, 3300, 4100, 5000}) {
            SCOPED_TRACE(testing::Message() << storedName(format) << ' ' << width);
            const int height = width / 4;
            Darkroom room(sceneOf(
                width, height, [&](int x, int y) { return sceneAt((x + 0.5) / width, (y + 0.5) / height); }));
            const FilmSettings settings{
                .stock = FilmStock::mono400, .format = format, .grain = 1, .halation = 1};
            const auto preview = room.engine.preview(photo, settings).film;
            room.engine.exportPhoto(photo, settings, print);
            const auto exported = reduced(lightOf(*room.system.contents("/prints/a.tif"), width, height),
                                          previewSide, ReductionFilter::lanczos, inOrder, {});
            ASSERT_EQ(preview.width(), 1600);
            ASSERT_GE(preview.height(), 399); // 1600 · height / width, cut off
            const int rows = preview.height();
            ASSERT_EQ(exported.width(), 1600);
            ASSERT_EQ(exported.height(), rows);
            const Codes shown = [&](int x, int y, int c) -> double {
                return preview.rgba()[4 * static_cast<std::size_t>(std::min(y, rows - 1) * 1600 + x) +
                                      static_cast<std::size_t>(c)];
            };
            const Codes written = [&](int x, int y, int c) {
                return 255 * encoded(exported.plane(c).at(x, std::min(y, rows - 1)));
            };
            for (int c = 0; c < 3; ++c) EXPECT_NEAR(meanOf(shown, c), meanOf(written, c), 1);
            const double half = (written(320, 200, 0) + written(40, 200, 0)) / 2;
            EXPECT_NEAR(haloRadius(shown, half), haloRadius(written, half), 0.5);
            // A pixel of another size sees the field through another response: what is kept of the grain is
            // written down, not asked for.
            std::printf("%s, %d pixels: grain of the export, reduced, over the preview's: %.2f\n",
                        std::string(storedName(format)).c_str(), width, grainOf(written) / grainOf(shown));
        }
}

TEST(FilmExport, ShowsTheSamePixelsInADetailHoweverWideOrHighThePhotoIs) {
    struct Case {
        int width, height;
        Rectangle part;
    };
    for (const auto& [width, height, part] :
         {Case{1100, 1234, {517, 490, 300, 60}}, Case{32'768, 20, {32'700, 3, 68, 12}},
          Case{3, 9000, {0, 8990, 3, 10}}, Case{1, 1, {0, 0, 1, 1}}}) {
        SCOPED_TRACE(testing::Message() << width << 'x' << height);
        Darkroom room(chart(width, height));
        const FilmSettings settings{.grain = 1, .halation = 1, .colorSeparation = 1};
        room.engine.exportPhoto(photo, settings, print);
        const auto whole = lightOf(*room.system.contents("/prints/a.tif"), width, height);
        const auto detail = room.engine.detail(photo, settings, part);
        ASSERT_EQ(detail.width(), part.width);
        for (int y = 0; y < part.height; ++y)
            for (int x = 0; x < part.width; ++x)
                for (int c = 0; c < 3; ++c)
                    ASSERT_NEAR(detail.rgba()[4 * static_cast<std::size_t>(y * part.width + x) +
                                              static_cast<std::size_t>(c)],
                                255 * encoded(whole.plane(c).at(part.x + x, part.y + y)), 0.503);
    }
}

TEST(FilmExport, TakesTheSourceThatADetailKeepsUntilItIsForgotten) {
    Darkroom room(chart(200, 100));
    room.engine.detail(photo, {}, {0, 0, 50, 50});
    room.engine.exportPhoto(photo, {}, print);
    EXPECT_EQ(room.loads, 1);
    room.engine.forgetDetail(files::FileUrl::fromPath("/photos/b.dng"));
    room.engine.detail(photo, {}, {0, 0, 50, 50});
    EXPECT_EQ(room.loads, 1) << "another photo was forgotten";
    room.engine.forgetDetail(photo);
    room.engine.exportPhoto(photo, {}, files::FileUrl::fromPath("/prints/b.tif"));
    EXPECT_EQ(room.loads, 2);
    room.engine.exportPhoto(photo, {}, files::FileUrl::fromPath("/prints/c.tif"));
    EXPECT_EQ(room.loads, 3) << "an export keeps nothing";
    EXPECT_EQ(room.system.contents("/prints/a.tif"), room.system.contents("/prints/b.tif"));
    // The file changed: what is kept of it does not count.
    room.engine.detail(photo, {}, {0, 0, 50, 50});
    room.system.write("/photos/a.dng", "other data");
    room.engine.exportPhoto(photo, {}, files::FileUrl::fromPath("/prints/d.tif"));
    EXPECT_EQ(room.loads, 5);
}

TEST(FilmExport, NamesTheDestinationAndNotItsHiddenFileInAFailure) {
    struct Case {
        std::function<void(MemoryFileSystem&)> break_;
        const char *destination, *message;
        int loads;
    };
    const auto nothing = [](MemoryFileSystem&) {};
    for (const auto& [break_, destination, message, loads] :
         {Case{nothing, "/gone/a.tif", "Could not write into the folder “/gone", 0},
          Case{nothing, "/photos/a.dng/a.tif", "Could not ", 0},
          Case{[](MemoryFileSystem& system) { system.setFreeBytes(5000); }, "/prints/a.tif",
               "Could not write “/prints/a.tif”: ", 1}}) {
        Darkroom room(chart(120, 80));
        break_(room.system);
        try {
            room.engine.exportPhoto(photo, {}, files::FileUrl::fromPath(destination));
            ADD_FAILURE() << destination;
        } catch (const files::FileError& error) {
            EXPECT_THAT(error.what(), testing::StartsWith(message));
            EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr(".lumisort-")));
        }
        EXPECT_EQ(room.loads, loads) << destination;
        EXPECT_THAT(room.system.filesBelow("/prints"), testing::IsEmpty());
    }
}

TEST(FilmExport, ChecksNamesBeforeItMissesThePhoto) {
    Darkroom room(chart(12, 8));
    room.system.write("/prints/taken.tif", "someone's");
    const auto problem = [&](const char* of, const char* destination) -> std::string {
        try {
            room.engine.exportPhoto(files::FileUrl::fromPath(of), {}, files::FileUrl::fromPath(destination));
        } catch (const std::exception& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(problem("/gone/b.jpg", "/prints/b.tif"), "Film requires a RAW photo.");
    EXPECT_EQ(problem("/gone/b.dng", "/prints/taken.tif"),
              "A file already exists at this location. Choose another name.");
    EXPECT_EQ(problem("/gone/b.dng", "/prints/b.png"), "Choose TIFF to preserve the 16-bit film output.");
    EXPECT_EQ(problem("/gone/b.tif", "/gone/b.tif"),
              "Choose a different location to preserve the original photo.");
    EXPECT_THAT(problem("/gone/b.dng", "/prints/b.tif"), testing::HasSubstr("/gone"));
    EXPECT_EQ(room.loads, 0);
}

TEST(FilmExport, IsReadByLibtiffAsTheCodesThatWereRendered) {
    const lumisort::test::TemporaryFolder folder;
    const auto source = files::FileUrl::fromPath((folder.path() / "a.dng").string());
    folder.write("a.dng", "no metadata");
    const auto destination = files::FileUrl::fromPath((folder.path() / "a.TIFF").string());
    const int width = 131, height = 77;
    FilmRenderEngine engine(FilmInputs::raw, files::FileSystem::real(), [&](const auto&...) {
        return FilmSource{chart(width, height), width, height, true};
    });
    const FilmSettings settings{.stock = FilmStock::color400, .grain = 1, .halation = 1};
    engine.exportPhoto(source, settings, destination);
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        names.push_back(entry.path().filename());
    EXPECT_THAT(names, testing::UnorderedElementsAre("a.dng", "a.TIFF"));

    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(destination.path().c_str(), "r"), TIFFClose);
    ASSERT_TRUE(tiff);
    std::uint32_t profileBytes = 0;
    void* profile = nullptr;
    ASSERT_TRUE(TIFFGetField(tiff.get(), TIFFTAG_ICCPROFILE, &profileBytes, &profile));
    EXPECT_THAT(std::string(static_cast<char*>(profile), profileBytes),
                testing::HasSubstr(std::string("s\0R\0G\0B", 7)));
    const auto whole = engine.detail(source, settings, {0, 0, width, height});
    std::vector<std::uint16_t> row(4 * width);
    for (int y = 0; y < height; ++y) {
        ASSERT_EQ(TIFFReadScanline(tiff.get(), row.data(), static_cast<std::uint32_t>(y)), 1);
        for (std::size_t i = 0; i < row.size(); ++i)
            ASSERT_NEAR(whole.rgba()[static_cast<std::size_t>(y) * row.size() + i], row[i] / 257.0, 0.502);
    }
}

} // namespace

} // namespace lumisort::film::test
