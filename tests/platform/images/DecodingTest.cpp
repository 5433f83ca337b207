#include "Pictures.h"
#include "platform/tasks/Cancellation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <latch>
#include <thread>

namespace lumisort::images {
namespace {

using test::flatPicture;
using test::Rgba;
using test::save;
using test::TemporaryFolder;

TEST(Properties, OfEveryFormat) {
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(30, 20);
    // TIFF files carry their EXIF block elsewhere than libvips writes it; cameras' files are tested below.
    for (const auto& [ending, type, date] : {std::tuple{".jpg", ImageType::jpeg, "2021:07:04 18:30:00"},
                                             std::tuple{".png", ImageType::png, "2021:07:04 18:30:00"},
                                             std::tuple{".tif", ImageType::tiff, ""}}) {
        const ImageProperties properties =
            decoder().properties(test::saveTagged(picture.get(), 6, folder, ending));
        EXPECT_EQ(properties.type, type) << ending;
        EXPECT_EQ(properties.width, 30) << ending;
        EXPECT_EQ(properties.height, 20) << ending;
        EXPECT_EQ(properties.orientation, Orientation::quarterTurnClockwise) << ending;
        EXPECT_EQ(properties.dateTimeOriginal, date) << ending;
    }
}

TEST(Properties, OfCameraFiles) {
    LUMISORT_NEEDS_CORPUS();
    struct Camera {
        const char* path;
        ImageType type;
        int width, height;
        const char* date;
    };
    for (const auto& camera :
         {Camera{"raw/RAW_KODAK_C330_FORMAT_NONE_YRGB.raw", ImageType::raw, 1216, 912, ""},
          Camera{"raw/RAW_KODAK_DC50.KDC", ImageType::raw, 768, 512, ""},
          Camera{"raw/canon_eos_6d.dng", ImageType::raw, 1224, 816, "2019:06:06 07:29:51"},
          Camera{"heic/iphone_15_pro.heic", ImageType::heif, 4032, 3024, "2023:10:31 11:44:43"},
          Camera{"heic/other/Sony_ILCE-1_50MP_black.HIF", ImageType::heif, 8640, 5760, "2021:02:18 19:55:41"},
          Camera{"broken/raw-undecodable/nef__Issue 247-1.nef", ImageType::jpeg, 2000, 3008,
                 "2010:03:01 21:50:21"}}) {
        const auto url = files::FileUrl::fromPath((*test::corpus() / camera.path).string());
        const ImageProperties properties = decoder().properties(url);
        EXPECT_EQ(properties.type, camera.type) << camera.path;
        EXPECT_EQ(decoder().identify(url), camera.type) << camera.path;
        EXPECT_EQ(properties.width, camera.width) << camera.path;
        EXPECT_EQ(properties.height, camera.height) << camera.path;
        EXPECT_EQ(properties.dateTimeOriginal, camera.date) << camera.path;
        if (camera.type != ImageType::raw) continue;
        const Bitmap thumbnail = decoder().thumbnail(url, 256);
        EXPECT_EQ(thumbnail.width(), 256) << camera.path;
        EXPECT_EQ(thumbnail.height(), std::lround(256.0 * camera.height / camera.width)) << camera.path;
    }
}

TEST(Thumbnail, FitsAndIsNeverEnlarged) {
    const TemporaryFolder folder;
    struct Case {
        int width, height, maxSide, thumbnailWidth, thumbnailHeight;
    };
    for (const auto& [width, height, maxSide, thumbnailWidth, thumbnailHeight] :
         {Case{4000, 1000, 256, 256, 64}, Case{1801, 1203, 100, 100, 67}, Case{100, 50, 256, 100, 50},
          Case{8000, 3, 256, 256, 1}, Case{1, 900, 7, 1, 7}, Case{1, 1, 1, 1, 1}}) {
        const auto picture = test::asymmetricPicture(width, height);
        for (const char* name : {"a.jpg", "a.png", "a.tif"}) {
            const Bitmap thumbnail = decoder().thumbnail(save(picture.get(), folder, name), maxSide);
            EXPECT_EQ(thumbnail.width(), thumbnailWidth) << width << 'x' << height << ' ' << name;
            EXPECT_EQ(thumbnail.height(), thumbnailHeight) << width << 'x' << height << ' ' << name;
            EXPECT_EQ(thumbnail.rgba().size(), std::size_t{4} * thumbnailWidth * thumbnailHeight);
        }
    }
}

/// An 8-bit colour of Display P3 in sRGB: both have the sRGB curve; the matrix follows from their primaries
/// (SMPTE EG 432-1; IEC 61966-2-1) and their common white.
Rgba displayP3ToSRGB(const Rgba& p3) {
    constexpr double matrix[3][3] = {
        {1.22494, -0.22494, 0}, {-0.04206, 1.04206, 0}, {-0.01964, -0.07864, 1.09828}};
    double linear[3];
    for (std::size_t i = 0; i < 3; ++i) {
        const double v = p3[i] / 255.0;
        linear[i] = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    }
    Rgba result{0, 0, 0, 255};
    for (std::size_t i = 0; i < 3; ++i) {
        double v = 0;
        for (std::size_t k = 0; k < 3; ++k) v += matrix[i][k] * linear[k];
        v = v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
        result[i] = static_cast<int>(std::lround(255 * v));
    }
    return result;
}

TEST(Thumbnail, ColoursOfEveryKindBecomeSRGB) {
    struct Case {
        const char* what;
        std::vector<double> samples;
        VipsBandFormat format;
        VipsInterpretation interpretation;
        const char* name;
        Rgba expected;
        int tolerance = 1;
    };
    const Rgba p3{200, 100, 50, 255};
    const TemporaryFolder folder;
    for (const auto& c : {
             Case{"grey", {77}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_B_W, "a.jpg", {77, 77, 77, 255}},
             Case{"grey and alpha",
                  {77, 128},
                  VIPS_FORMAT_UCHAR,
                  VIPS_INTERPRETATION_B_W,
                  "a.png",
                  {77, 77, 77, 128}},
             Case{"one bit",
                  {255},
                  VIPS_FORMAT_UCHAR,
                  VIPS_INTERPRETATION_B_W,
                  "a.tif[bitdepth=1]",
                  {255, 255, 255, 255}},
             Case{"palette",
                  {200, 10, 90},
                  VIPS_FORMAT_UCHAR,
                  VIPS_INTERPRETATION_sRGB,
                  "a.png[palette]",
                  {200, 10, 90, 255},
                  3},
             Case{"16-bit",
                  {40000, 20000, 257},
                  VIPS_FORMAT_USHORT,
                  VIPS_INTERPRETATION_RGB16,
                  "a.png",
                  {156, 78, 1, 255}},
             Case{"16-bit alpha",
                  {40000, 20000, 257, 32896},
                  VIPS_FORMAT_USHORT,
                  VIPS_INTERPRETATION_RGB16,
                  "a.png",
                  {156, 78, 1, 128}},
             Case{"16-bit grey",
                  {32896},
                  VIPS_FORMAT_USHORT,
                  VIPS_INTERPRETATION_GREY16,
                  "a.tif",
                  {128, 128, 128, 255}},
             Case{"linear floats",
                  {0.2159, 1, 0},
                  VIPS_FORMAT_FLOAT,
                  VIPS_INTERPRETATION_scRGB,
                  "a.tif",
                  {128, 255, 0, 255}},
             Case{"linear grey floats",
                  {0.2159},
                  VIPS_FORMAT_FLOAT,
                  VIPS_INTERPRETATION_B_W,
                  "a.tif",
                  {128, 128, 128, 255}},
             // Without a profile CMYK has no exact meaning: no ink is white, all black ink is dark.
             Case{"no ink",
                  {0, 0, 0, 0},
                  VIPS_FORMAT_UCHAR,
                  VIPS_INTERPRETATION_CMYK,
                  "a.jpg",
                  {255, 255, 255, 255},
                  3},
             Case{"black ink",
                  {0, 0, 0, 255},
                  VIPS_FORMAT_UCHAR,
                  VIPS_INTERPRETATION_CMYK,
                  "a.tif",
                  {35, 31, 32, 255},
                  12},
             Case{"straight alpha",
                  {200, 100, 50, 128},
                  VIPS_FORMAT_UCHAR,
                  VIPS_INTERPRETATION_sRGB,
                  "a.tif",
                  {200, 100, 50, 128}},
             Case{"premultiplied",
                  {200, 100, 50, 128},
                  VIPS_FORMAT_UCHAR,
                  VIPS_INTERPRETATION_sRGB,
                  "a.tif[premultiply]",
                  {200, 100, 50, 128},
                  2},
             Case{"Display P3",
                  {200, 100, 50},
                  VIPS_FORMAT_UCHAR,
                  VIPS_INTERPRETATION_sRGB,
                  "a.jpg[profile=p3,Q=100]",
                  displayP3ToSRGB(p3),
                  2},
             Case{"Display P3, 16 bit",
                  {51400, 25700, 12850},
                  VIPS_FORMAT_USHORT,
                  VIPS_INTERPRETATION_RGB16,
                  "a.png[profile=p3]",
                  displayP3ToSRGB(p3),
                  2},
         }) {
        const auto picture = flatPicture(40, 30, c.samples, c.format, c.interpretation);
        const auto url = save(picture.get(), folder, c.name);
        for (const int maxSide : {40, 8}) {
            const Rgba colour = test::pixel(decoder().thumbnail(url, maxSide), 3, 2);
            for (std::size_t i = 0; i < 4; ++i)
                EXPECT_NEAR(colour[i], c.expected[i], c.tolerance)
                    << c.what << ", channel " << i << ", " << maxSide;
        }
    }
}

TEST(Thumbnail, TransparentPixelsDoNotColourTheirNeighbours) {
    const TemporaryFolder folder;
    const auto clear = flatPicture(37, 32, {255, 0, 0, 0}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_sRGB);
    const auto blue = flatPicture(27, 32, {0, 0, 255, 255}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_sRGB);
    const auto both = runVips([&](VipsImage** out) {
        return vips_join(clear.get(), blue.get(), out, VIPS_DIRECTION_HORIZONTAL, nullptr);
    });
    const Bitmap thumbnail = decoder().thumbnail(save(both.get(), folder, "a.png"), 10);
    for (int x = 0; x < thumbnail.width(); ++x)
        if (const Rgba colour = test::pixel(thumbnail, x, 2); colour[3] > 8) {
            EXPECT_LT(colour[0], 8) << x;
        }
}

/// What a decode throws, "" for nothing.
std::string failure(const files::FileUrl& url) {
    try {
        decoder().thumbnail(url, 64);
        return {};
    } catch (const ImageError& error) {
        return error.what();
    }
}

TEST(Thumbnail, BombsAreRecordedButNotDecoded) {
    const TemporaryFolder folder;
    const auto tiny = flatPicture(16, 16, {9, 9, 9}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_sRGB);
    std::string jpeg = test::contents(save(tiny.get(), folder, "a.jpg"));
    const auto frame = jpeg.find("\xff\xc0") + 5; // precision behind the length, then height and width
    jpeg.replace(frame, 4, "\xff\xdc\xff\xdc");
    std::string png = test::contents(save(tiny.get(), folder, "a.png"));
    using namespace std::string_literals;
    // 100,000 × 100,000 in 8-bit RGB, with the header's checksum.
    png.replace(16, 17, "\0\x01\x86\xa0\0\x01\x86\xa0\x08\x02\0\0\0\x27\x30\x9c\x9f"s);
    for (const auto& [name, bytes, side] :
         {std::tuple{"bomb.jpg", jpeg, 65'500}, std::tuple{"bomb.png", png, 100'000}}) {
        const auto url = folder.write(name, bytes);
        EXPECT_EQ(decoder().properties(url).width, side) << name;
        EXPECT_EQ(decoder().properties(url).height, side) << name;
        EXPECT_EQ(failure(url), "The photo is larger than 500 megapixels or 65,535 pixels on a side.")
            << name;
    }
}

TEST(Thumbnail, ScanBombsAreRefused) {
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(64, 64);
    const auto url = save(picture.get(), folder, "a.jpg[interlace]");
    EXPECT_EQ(failure(url), "");
    const std::string jpeg = test::contents(url);
    const auto scan = jpeg.rfind("\xff\xda");
    std::string bomb = jpeg.substr(0, scan);
    for (int i = 0; i < 200; ++i) bomb += jpeg.substr(scan, jpeg.size() - 2 - scan);
    EXPECT_EQ(failure(folder.write("bomb.jpg", bomb + "\xff\xd9")), "The picture is made of too many scans.");
}

TEST(Thumbnail, TruncatedFilesFailAndTrailingBytesDoNot) {
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(600, 400);
    std::vector<files::FileUrl> whole;
    for (const char* name : {"a.jpg", "b.jpg[interlace]", "a.png", "b.png[interlace]", "a.tif",
                             "b.tif[compression=lzw]", "c.tif[tile]"})
        whole.push_back(save(picture.get(), folder, name));
    if (test::corpus())
        for (const char* path : {"heic/iphone_7.heic", "heic/heic__Issue 437 (dotnet).heic",
                                 "raw/RAW_KODAK_DC50.KDC", "raw/canon_eos_6d.dng"})
            whole.push_back(files::FileUrl::fromPath((*test::corpus() / path).string()));
    for (const auto& url : whole) {
        const std::string bytes = test::contents(url);
        EXPECT_EQ(failure(folder.write("longer", bytes + std::string(5000, '\0'))), "") << url.path();
        for (const double part : {0.001, 0.3, 0.9})
            EXPECT_NE(
                failure(folder.write("cut", bytes.substr(0, static_cast<std::size_t>(
                                                                part * static_cast<double>(bytes.size()))))),
                "")
                << url.path() << " at " << part;
    }
}

TEST(Thumbnail, ALittleDamageIsShownAndMuchIsNot) {
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(1600, 1600);
    const std::string jpeg = test::contents(save(picture.get(), folder, "a.jpg[restart_interval=10]"));
    const auto damaged = [&](std::size_t places) {
        std::string bytes = jpeg;
        std::size_t restart = 0;
        for (std::size_t place = 0; place < places; ++place) {
            do restart = bytes.find('\xff', restart + 1);
            while ((bytes[restart + 1] & 0xf8) != 0xd0);
            bytes[restart + 1] ^= 4; // A restart that is not the next: what lies between is taken for lost.
        }
        return folder.write("damaged.jpg", bytes);
    };
    EXPECT_EQ(failure(damaged(3)), "");
    EXPECT_NE(failure(damaged(300)), "");
}

TEST(Thumbnail, StopsWhenAsked) {
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(6000, 4000);
    std::vector<files::FileUrl> photos{
        save(picture.get(), folder, "a.jpg"), save(picture.get(), folder, "b.jpg[interlace]"),
        save(picture.get(), folder, "a.png[compression=1]"), save(picture.get(), folder, "a.tif")};
    if (test::corpus())
        for (const char* path : {"heic/iphone_7.heic", "raw/canon_eos_6d.dng"})
            photos.push_back(files::FileUrl::fromPath((*test::corpus() / path).string()));
    for (const auto& url : photos) {
        std::latch started(1);
        bool cancelled = false;
        std::jthread worker([&](const std::stop_token& stop) {
            started.count_down();
            try {
                // At full size, so that the decode is still going on.
                decoder().thumbnail(url, 6000, Quality::fine, stop);
            } catch (const tasks::Cancelled&) {
                cancelled = true;
            }
        });
        started.wait();
        worker.request_stop();
        worker.join();
        EXPECT_TRUE(cancelled) << url.path();
    }
}

} // namespace
} // namespace lumisort::images
