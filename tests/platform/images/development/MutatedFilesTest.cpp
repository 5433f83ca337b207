#include "platform/images/Decoder.h"
#include "support/DngFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace lumisort::images {
namespace {

using test::Light;
using test::TestCamera;

std::string readAll(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Small photos of each kind of sensor, and the collection's RAW files and what others found to do harm.
std::vector<std::string> seeds() {
    std::vector<std::string> contents;
    const test::TemporaryFolder folder;
    using enum TestCamera::Sensor;
    for (const auto sensor : {bayer, fourColour, monochrome, linear})
        for (const int side : {24, 61}) {
            const TestCamera camera{.sensor = sensor, .neutral = {0.6, 1, 0.5}};
            const auto url = camera.photograph(folder, "a.dng", side, side,
                                               [](int x, int y) { return Light{x / 40.0, y / 40.0, 0.9}; });
            contents.push_back(readAll(url.path()));
        }
    if (const auto corpus = test::corpus())
        for (const char* part : {"raw", "broken/truncated-raw", "broken/exiv2"})
            for (const auto& entry : std::filesystem::directory_iterator(*corpus / part))
                if (entry.is_regular_file() && entry.file_size() < 500'000)
                    contents.push_back(readAll(entry.path()));
    return contents;
}

/// Changes bytes, mostly in the first kilobyte, where directories and headers are; or cuts the file short.
std::string mutated(std::string contents, std::mt19937& random) {
    if (contents.empty()) return contents;
    const auto below = [&random](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    for (std::size_t change = below(8) + 1; change > 0; --change) {
        const bool early = below(4) > 0;
        // libtiff writes its directory behind the pixels.
        const std::size_t range = std::min<std::size_t>(contents.size(), early ? 1024 : contents.size());
        const std::size_t at = below(2) ? below(range) : contents.size() - 1 - below(range);
        constexpr unsigned char edges[]{0, 1, 0x7F, 0x80, 0xFE, 0xFF};
        contents[at] = static_cast<char>(below(2) ? edges[below(std::size(edges))] : below(256));
    }
    if (below(10) == 0) contents.resize(below(contents.size()) + 1);
    return contents;
}

/// LibRaw 0.20 keeps libjpeg's memory, some kilobytes, where a tile of a lossy DNG cannot be decoded
/// (LibRaw::lossy_dng_load_raw). The other tests look for leaks of our own.
struct WithoutLeakCheck {
#ifdef __SANITIZE_ADDRESS__
    __lsan::ScopedDisabler disabler;
#endif
};

bool isFinite(const LinearImage& image) {
    for (int channel = 0; channel < 3; ++channel)
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (!std::isfinite(image.plane(channel).at(x, y))) return false;
    return true;
}

// Under the sanitizers, with LUMISORT_FUZZ_SECONDS set to some hundred, this looks for what hostile files can
// do.
TEST(MutatedFiles, AreDevelopedOrRefused) {
    const char* const wanted = std::getenv("LUMISORT_FUZZ_SECONDS"); // NOLINT(concurrency-mt-unsafe)
    const char* const start = std::getenv("LUMISORT_FUZZ_SEED");     // NOLINT(concurrency-mt-unsafe)
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(wanted ? std::atoi(wanted) : 2);
    const auto contents = seeds();
    const test::TemporaryFolder folder;
    unsigned seed = start ? static_cast<unsigned>(std::atoi(start)) : 1;
    int developed = 0, refused = 0;
    for (; std::chrono::steady_clock::now() < end; ++seed) {
        std::mt19937 random(seed); // NOLINT(cert-msc51-cpp): a failure can be repeated by its seed
        const auto url = folder.write("a.dng", mutated(contents[random() % contents.size()], random));
        SCOPED_TRACE(seed);
        [[maybe_unused]] const WithoutLeakCheck withoutLeakCheck;
        const auto began = std::chrono::steady_clock::now();
        try {
            const auto photo = decoder().develop(url, {.longestSide = static_cast<int>(random() % 3) * 8});
            ASSERT_TRUE(isFinite(photo.image));
            ASSERT_GT(photo.image.width(), 0);
            ++developed;
        } catch (const ImageError&) {
            ++refused;
        }
        const auto took = std::chrono::steady_clock::now() - began;
        ASSERT_LT(took, std::chrono::seconds(60));
    }
    EXPECT_GT(developed, 0);
    EXPECT_GT(refused, 0);
    RecordProperty("developed", developed);
    RecordProperty("refused", refused);
}

} // namespace
} // namespace lumisort::images
