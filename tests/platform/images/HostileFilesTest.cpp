#include "Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

namespace lumisort::images {
namespace {

std::vector<files::FileUrl> filesUnder(std::initializer_list<const char*> folders) {
    std::vector<files::FileUrl> urls;
    for (const char* folder : folders)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(*test::corpus() / folder))
            if (entry.is_regular_file()) urls.push_back(files::FileUrl::fromPath(entry.path().string()));
    std::ranges::sort(urls);
    return urls;
}

/// What the decoder says of a file: sizes and a sum of the pixels, or why not.
std::string describe(const files::FileUrl& url) {
    std::string text;
    try {
        const ImageProperties properties = decoder().properties(url);
        text = std::to_string(properties.width) + "x" + std::to_string(properties.height) + " ";
        const Bitmap thumbnail = decoder().thumbnail(url, 256);
        std::uint64_t sum = 0;
        for (const auto sample : thumbnail.rgba()) sum = sum * 31 + sample;
        return text + std::to_string(sum);
    } catch (const ImageError& error) {
        return text + error.what();
    }
}

// Run under the sanitizers this is the proof that no file of the collection does harm.
TEST(HostileFiles, AreReadOrRefusedQuietlyAndTheSameFromManyThreads) {
    LUMISORT_NEEDS_CORPUS();
    const auto urls = filesUnder({"broken", "orientation/libvips", "heic/other"});
    ASSERT_GT(urls.size(), 400u);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::vector<std::string> alone, together(urls.size());
    for (const auto& url : urls) alone.push_back(describe(url));
    std::atomic<std::size_t> next = 0;
    {
        std::vector<std::jthread> workers;
        for (int i = 0; i < 4; ++i)
            workers.emplace_back([&] {
                for (std::size_t k = next++; k < urls.size(); k = next++) together[k] = describe(urls[k]);
            });
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    for (std::size_t i = 0; i < urls.size(); ++i) EXPECT_EQ(alone[i], together[i]) << urls[i].path();
}

TEST(HostileFiles, RawWithoutAPictureIsNotReadable) {
    LUMISORT_NEEDS_CORPUS();
    for (const char* path :
         {"broken/exiv2/IMG_1361.dng", "broken/exiv2/Canon-R6-pruned.CR3",
          "broken/truncated-raw/fixture-Leica-M10.dng", "broken/truncated-raw/fixture-sony-zv-e10.arw",
          "broken/truncated-raw/fixture.cr3", "broken/truncated-raw/fixture.raf",
          "broken/raw-undecodable/rw2__Issue 419.rw2"})
        EXPECT_THROW(decoder().thumbnail(files::FileUrl::fromPath((*test::corpus() / path).string()), 256),
                     ImageError)
            << path;
}

TEST(HostileFiles, RealPhotosAllOpen) {
    LUMISORT_NEEDS_CORPUS();
    int opened = 0;
    for (const auto& url : filesUnder({"photos", "groups", "heic"})) {
        const std::string name(url.name());
        // Named by their collections as damaged, a film without a still, and the table beside the photos.
        if (name.contains("corrupt") || name == "fixture-msf1.heic" || name.ends_with(".csv")) continue;
        EXPECT_NO_THROW(EXPECT_GT(decoder().properties(url).width, 0)) << url.path();
        ++opened;
        if (name.ends_with(".HIF")) continue; // Two large ones take seconds and are decoded above.
        EXPECT_NO_THROW(decoder().thumbnail(url, 256)) << url.path();
    }
    EXPECT_GT(opened, 150);
}

} // namespace
} // namespace lumisort::images

/// LibRaw does not close its JPEG decoder when a tile of a lossy DNG ends early: some 20 kB per such file,
/// seen from outside only as libjpeg's. What the program itself holds of a JPEG is a libvips object and still
/// found.
extern "C" const char*
__lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier): the sanitizer's
    return "leak:libjpeg.so";
}
