#include "platform/images/decoding/Upright.h"

#include "Pictures.h"

#include <gtest/gtest.h>

namespace lumisort::images {
namespace {

using test::asymmetricPicture;
using test::difference;

/// A bitmap of `width` columns whose pixels carry the digits of `pixels`.
Bitmap numbered(int width, const std::string& pixels) {
    std::vector<std::uint8_t> rgba;
    for (const char c : pixels) rgba.insert(rgba.end(), 4, static_cast<std::uint8_t>(c));
    return {width, static_cast<int>(pixels.size()) / width, rgba};
}

std::string digits(const Bitmap& bitmap) {
    std::string text;
    for (std::size_t i = 0; i < bitmap.rgba().size(); i += 4) text += static_cast<char>(bitmap.rgba()[i]);
    return text;
}

// The definition: orientation 6, for one, says that row 0 is the right side and column 0 the top of the
// scene.
TEST(Orientation, TurnsUprightAsExifDefines) {
    const std::array<std::pair<int, std::string>, 8> upright{{{3, "123456"},
                                                              {3, "321654"},
                                                              {3, "654321"},
                                                              {3, "456123"},
                                                              {2, "142536"},
                                                              {2, "415263"},
                                                              {2, "635241"},
                                                              {2, "362514"}}};
    for (std::uint8_t orientation = 1; orientation <= 8; ++orientation) {
        const auto& [width, pixels] = upright[static_cast<std::size_t>(orientation) - 1];
        const Bitmap turned = turnUpright(numbered(3, "123456"), Orientation{orientation});
        EXPECT_EQ(turned.width(), width) << int{orientation};
        EXPECT_EQ(digits(turned), pixels) << int{orientation};
    }
}

TEST(Orientation, CompositionEqualsOneTurnAfterTheOther) {
    for (std::uint8_t a = 1; a <= 8; ++a)
        for (std::uint8_t b = 1; b <= 8; ++b) {
            const Orientation first{a}, second{b};
            EXPECT_EQ(digits(turnUpright(turnUpright(numbered(3, "123456"), first), second)),
                      digits(turnUpright(numbered(3, "123456"), compose(first, second))))
                << int{a} << ", " << int{b};
        }
}

TEST(Orientation, EveryFormatComesOutUpright) {
    const test::TemporaryFolder folder;
    const auto stored = asymmetricPicture(96, 64);
    for (const std::string ending : {".jpg", ".png", ".tif"})
        for (std::uint8_t orientation = 1; orientation <= 8; ++orientation) {
            const auto url = test::saveTagged(stored.get(), orientation, folder, ending);
            EXPECT_EQ(decoder().properties(url).orientation, Orientation{orientation}) << url.path();
            EXPECT_EQ(decoder().properties(url).width, 96) << url.path();
            const Bitmap expected = turnUpright(test::bitmapOf(stored.get()), Orientation{orientation});
            EXPECT_LT(difference(decoder().thumbnail(url, 96), expected), 1.5) << url.path();
        }
}

struct Reference {
    const char* folder;
    const char* prefix;
    const char* ending;
    int reference; ///< the number of the file that is known to be upright
};

TEST(Orientation, RealFilesEqualTheirUprightReference) {
    LUMISORT_NEEDS_CORPUS();
    for (const auto& [folder, prefix, ending, reference] :
         {Reference{"orientation/recurser", "Landscape_", ".jpg", 0},
          Reference{"orientation/recurser", "Portrait_", ".jpg", 0},
          Reference{"orientation/libvips/rotation", "", ".jpg", 1},
          Reference{"orientation/kimageformats-heic", "orientation", ".heic", 1},
          Reference{"orientation/kimageformats-heic", "crop_orientation", ".heic", 1}}) {
        const auto decode = [&](int number) {
            const auto path = *test::corpus() / folder / (prefix + std::to_string(number) + ending);
            return decoder().thumbnail(files::FileUrl::fromPath(path.string()), 128);
        };
        const Bitmap upright = decode(reference);
        for (int orientation = 1; orientation <= 8; ++orientation)
            EXPECT_LT(difference(decode(orientation), upright), 6) << folder << '/' << prefix << orientation;
    }
}

struct Phone {
    const char* path;
    int width, height; ///< as stored
    Orientation orientation;
    int uprightWidth, uprightHeight;
};

TEST(Orientation, HeicIsTurnedOnce) {
    LUMISORT_NEEDS_CORPUS();
    for (const auto& phone :
         {Phone{"heic/iphone_7.heic", 4032, 3024, Orientation::quarterTurnClockwise, 48, 64},                 // EXIF alone
          Phone{"heic/heic__Issue 437 (dotnet).heic", 4000, 1848, Orientation::quarterTurnClockwise, 30, 64}, // EXIF alone
          Phone{"heic/iphone_15_pro.heic", 4032, 3024, Orientation::quarterTurnClockwise, 48, 64},            // container and EXIF
          Phone{"orientation/kimageformats-heic/orientation5.heic", 160, 480, Orientation::mirrorMainDiagonal, 64, 21}}) {
        const auto url = files::FileUrl::fromPath((*test::corpus() / phone.path).string());
        const ImageProperties properties = decoder().properties(url);
        EXPECT_EQ(properties.width, phone.width) << phone.path;
        EXPECT_EQ(properties.height, phone.height) << phone.path;
        EXPECT_EQ(properties.orientation, phone.orientation) << phone.path;
        const Bitmap thumbnail = decoder().thumbnail(url, 64);
        EXPECT_EQ(thumbnail.width(), phone.uprightWidth) << phone.path;
        EXPECT_EQ(thumbnail.height(), phone.uprightHeight) << phone.path;
    }
}

} // namespace
} // namespace lumisort::images
