#include "platform/images/Decoder.h"
#include "platform/images/decoding/LocalDecoder.h"
#include "platform/images/decoding/SrgbProfile.h"
#include "support/TemporaryFolder.h"

#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>
#include <tiffio.h>

#include <memory>
#include <vector>

namespace lumisort::images {
namespace {

/// A whole file: the head for `photo` and samples that count up.
std::string fileFor(const files::FileUrl& photo, int width, int height) {
    std::string file = decoder().tiffHead(photo, width, height);
    for (int i = 0; i < width * height * 4; ++i) {
        file += static_cast<char>(i * 7 & 0xFF);
        file += static_cast<char>(i * 7 >> 8 & 0xFF);
    }
    return file;
}

files::FileUrl taggedPhoto(const test::TemporaryFolder& folder) {
    const Bitmap pixel(2, 1, std::array<std::uint8_t, 8>{10, 20, 30, 255, 40, 50, 60, 255});
    const auto url = folder.write("photo.jpg", decoder().encodeJpeg(pixel, 90));
    const auto image = Exiv2::ImageFactory::open(url.path());
    auto& exif = image->exifData();
    exif["Exif.Image.Make"] = "Chart";
    exif["Exif.Image.Orientation"] = std::uint16_t{6};
    exif["Exif.Image.Copyright"] = "© Ada";
    exif["Exif.Photo.DateTimeOriginal"] = "2021:07:04 18:30:00";
    exif["Exif.Photo.ExposureTime"] = Exiv2::URational(1, 60);
    exif["Exif.Photo.PixelXDimension"] = std::uint32_t{9999};
    exif["Exif.Photo.MakerNote"] = "secret offsets";
    exif["Exif.GPSInfo.GPSLatitudeRef"] = "N";
    exif["Exif.GPSInfo.GPSLatitude"] = "52/1 30/1 0/1";
    image->iptcData()["Iptc.Application2.City"] = "Berlin";
    image->xmpData()["Xmp.aux.Lens"] = "50 mm";
    image->xmpData()["Xmp.dc.title"] = "left behind";
    image->writeMetadata();
    return url;
}

TEST(TiffHead, StartsAFileThatAnotherLibraryReadsWithItsProfile) {
    const test::TemporaryFolder folder;
    const auto photo = taggedPhoto(folder);
    for (const auto& [width, height] : {std::pair{1, 1}, {5, 64}, {3, 65}, {300, 130}}) {
        const auto url = folder.write("a.tif", fileFor(photo, width, height));
        const std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(TIFFOpen(url.path().c_str(), "r"), &TIFFClose);
        ASSERT_TRUE(tiff);
        std::uint32_t w = 0, h = 0, profileBytes = 0;
        std::uint16_t samples = 0, bits = 0, orientation = 0, extras = 0;
        std::uint16_t* kinds = nullptr;
        void* profile = nullptr;
        EXPECT_TRUE(TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &w) &&
                    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &h) &&
                    TIFFGetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, &samples) &&
                    TIFFGetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, &bits) &&
                    TIFFGetField(tiff.get(), TIFFTAG_ORIENTATION, &orientation) &&
                    TIFFGetField(tiff.get(), TIFFTAG_EXTRASAMPLES, &extras, &kinds) &&
                    TIFFGetField(tiff.get(), TIFFTAG_ICCPROFILE, &profileBytes, &profile));
        EXPECT_EQ(std::vector({w, h}),
                  std::vector({static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)}));
        EXPECT_EQ(std::vector<int>({samples, bits, orientation, extras, kinds ? kinds[0] : -1}),
                  std::vector<int>({4, 16, 1, 1, EXTRASAMPLE_UNASSALPHA}));
        EXPECT_EQ(std::string(static_cast<const char*>(profile), profileBytes), srgbProfile());
        std::vector<std::uint16_t> row(static_cast<std::size_t>(width) * 4);
        for (int y = 0; y < height; ++y) {
            ASSERT_EQ(TIFFReadScanline(tiff.get(), row.data(), static_cast<std::uint32_t>(y)), 1);
            for (std::size_t i = 0; i < row.size(); ++i)
                ASSERT_EQ(row[i],
                          static_cast<std::uint16_t>((static_cast<std::size_t>(y) * row.size() + i) * 7));
        }
        // And as this program opens it.
        const auto properties = decoder().properties(url);
        EXPECT_EQ(properties.width, width);
        EXPECT_EQ(properties.dateTimeOriginal, "2021:07:04 18:30:00");
    }
}

TEST(TiffHead, CarriesWhatIsSaidOfThePhotoAndNothingOfItsPixels) {
    const test::TemporaryFolder folder;
    const auto url = folder.write("a.tif", fileFor(taggedPhoto(folder), 4, 3));
    const auto image = Exiv2::ImageFactory::open(url.path());
    image->readMetadata();
    auto& exif = image->exifData();
    const auto text = [&exif](const char* key) {
        const auto found = exif.findKey(Exiv2::ExifKey(key));
        return found == exif.end() ? std::string("absent") : found->toString();
    };
    EXPECT_EQ(text("Exif.Image.Make"), "Chart");
    EXPECT_EQ(text("Exif.Image.Copyright"), "© Ada");
    EXPECT_EQ(text("Exif.Image.Orientation"), "1");
    EXPECT_EQ(text("Exif.Image.Compression"), "1");
    EXPECT_EQ(text("Exif.Photo.ExposureTime"), "1/60");
    EXPECT_EQ(text("Exif.Photo.PixelXDimension"), "4");
    EXPECT_EQ(text("Exif.Photo.PixelYDimension"), "3");
    EXPECT_EQ(text("Exif.Photo.ColorSpace"), "1");
    EXPECT_EQ(text("Exif.Photo.MakerNote"), "absent");
    EXPECT_EQ(text("Exif.GPSInfo.GPSLatitude"), "52/1 30/1 0/1");
    EXPECT_EQ(image->iptcData()["Iptc.Application2.City"].toString(), "Berlin");
    EXPECT_EQ(image->xmpData()["Xmp.aux.Lens"].toString(), "50 mm");
    EXPECT_EQ(image->xmpData().findKey(Exiv2::XmpKey("Xmp.dc.title")), image->xmpData().end());
}

TEST(TiffHead, OfAPhotoWithoutReadableMetadataHasThePictureAlone) {
    const test::TemporaryFolder folder;
    const auto url = folder.write("a.tif", fileFor(folder.write("none.raw", "no metadata"), 2, 2));
    EXPECT_EQ(decoder().thumbnail(url, 2).width(), 2);
    EXPECT_EQ(decoder().tiffHead(folder.url().child("gone.dng"), 2, 2),
              decoder().tiffHead(folder.url().child("none.raw"), 2, 2));
}

} // namespace
} // namespace lumisort::images
