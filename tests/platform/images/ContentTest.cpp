#include "Pictures.h"
#include "platform/images/decoding/DecoderSetup.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace lumisort::images {
namespace {

using namespace std::string_literals;
using test::save;
using test::TemporaryFolder;

TEST(Content, DecidesWhateverTheNameSays) {
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(20, 10);
    const std::string jpeg = test::contents(save(picture.get(), folder, "a.jpg"));
    const std::string png = test::contents(save(picture.get(), folder, "a.png"));
    const std::string tiff = test::contents(save(picture.get(), folder, "a.tif"));
    for (const auto& [name, bytes, type] :
         {std::tuple{"photo.heic", jpeg, ImageType::jpeg}, std::tuple{"photo.nef", jpeg, ImageType::jpeg},
          std::tuple{"photo.tiff", png, ImageType::png}, std::tuple{"photo.cr2", tiff, ImageType::tiff},
          std::tuple{"na\xefve \xff\n[page=2].jpg", jpeg, ImageType::jpeg}}) {
        const auto url = folder.write(name, bytes);
        EXPECT_EQ(decoder().identify(url), type) << name;
        EXPECT_EQ(decoder().properties(url).type, type) << name;
        EXPECT_EQ(decoder().thumbnail(url, 20).width(), 20) << name;
    }
}

TEST(Content, OtherKindsOfFilesDoNotOpen) {
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(20, 10);
    const std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"><rect "
                            "width=\"9\" height=\"9\"/></svg>";
    const std::vector<std::pair<std::string, std::string>> files{
        {"empty", ""},
        {"one byte", "\xff"},
        {"svg", svg},
        {"xml svg", "<?xml version=\"1.0\"?>\n" + svg},
        {"pdf", "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj trailer<</Root 1 0 R>>"},
        {"script", "#!/bin/sh\necho hello, this is no photo\n"},
        {"gif", "GIF89a\x01\0\x01\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\x01\0\x01\0\0\x02\x02"
                "D\x01\0;"s},
        {"webp", test::contents(save(picture.get(), folder, "a.webp"))},
        {"bmp",
         "BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x02\0\0\0\x02\0\0\0\x01\0\x18\0\0\0\0\0\x10\0\0\0"s +
             std::string(40, 'x')},
        {"ppm", "P6\n2 2\n255\n" + std::string(12, 'x')},
        {"avif", "\0\0\0\x1c"
                 "ftypavif\0\0\0\0mif1avifmiaf"s +
                     std::string(100, '\0')},
        {"avif under the structure's brand", "\0\0\0\x18"
                                             "ftypmif1\0\0\0\0mif1avif"s +
                                                 std::string(100, '\0')},
        {"film", "\0\0\0\x18"
                 "ftypmp42\0\0\0\0mp42isom"s +
                     std::string(100, '\0')},
        {"zeros", std::string(70'000, '\0')},
        {"sample dump that is too small for its kind", std::string(2'247'167, '\x55')},
    };
    for (const auto& [what, bytes] : files) {
        const auto url = folder.write("photo.jpg", bytes);
        EXPECT_EQ(decoder().identify(url), std::nullopt) << what;
        EXPECT_THROW(decoder().properties(url), ImageError) << what;
        EXPECT_THROW(decoder().thumbnail(url, 64), ImageError) << what;
    }
}

TEST(Content, OnlyRegularFilesAreRead) {
    const TemporaryFolder folder;
    const auto pipe = folder.url().child("pipe.jpg");
    ASSERT_EQ(::mkfifo(pipe.path().c_str(), 0600), 0);
    for (const auto& url :
         {pipe, folder.url(), folder.url().child("missing.jpg"), files::FileUrl::fromPath("/dev/zero")}) {
        EXPECT_THROW(decoder().identify(url), ImageError) << url.path();
        EXPECT_THROW(decoder().properties(url), ImageError) << url.path();
        EXPECT_THROW(decoder().thumbnail(url, 64), ImageError) << url.path();
    }
}

// A camera's TIFF-like file whose preview any TIFF reader would show: without its sensor data it is no photo.
TEST(Content, SensorDataIsNeverReplacedByItsPreview) {
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(20, 10);
    const std::string tiff = test::contents(save(picture.get(), folder, "a.tif"));
    ASSERT_TRUE(tiff.starts_with("II*\0"s));
    const auto entry = [&tiff](char low, char high) { // where the first directory's entry of that tag starts
        const auto directory = static_cast<unsigned char>(tiff[4]) | static_cast<unsigned char>(tiff[5]) << 8;
        return tiff.find(std::string{low, high}, static_cast<std::size_t>(directory) + 2);
    };
    std::string dng = tiff, filtered = tiff, canon = tiff;
    dng.replace(entry('\x1a', '\x01'), 2, "\x12\xc6");          // resolution becomes DNGVersion
    filtered.replace(entry('\x06', '\x01') + 8, 2, "\x23\x80"); // behind a colour filter array
    canon.replace(8, 4, "CR\x02\0"s);
    for (const auto& bytes : {dng, filtered, canon}) {
        const auto url = folder.write("photo.tif", bytes);
        EXPECT_EQ(decoder().identify(url), ImageType::raw);
        EXPECT_THROW(decoder().thumbnail(url, 64), ImageError);
    }
}

TEST(Content, NoOtherLoaderOfTheLibraryCanBeReached) {
    initialiseDecoder();
    decoding::start({});
    const TemporaryFolder folder;
    const auto picture = test::asymmetricPicture(20, 10);
    for (const char* name : {"a.webp", "a.gif", "a.ppm", "a.v"}) {
        const auto url = save(picture.get(), folder, name);
        EXPECT_EQ(vips_image_new_from_file(url.path().c_str(), nullptr), nullptr) << name;
    }
}

} // namespace
} // namespace lumisort::images
