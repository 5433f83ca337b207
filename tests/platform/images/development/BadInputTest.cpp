#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "support/DngFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <optional>
#include <thread>

namespace lumisort::images {
namespace {

using test::Light;
using test::TestCamera;
using Reason = DevelopmentError::Reason;

std::string readAll(const files::FileUrl& url) {
    std::ifstream stream(url.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Why a file is not developed; none where it is no camera RAW at all.
std::optional<Reason> reasonFor(const files::FileUrl& url) {
    try {
        decoder().develop(url, {});
    } catch (const DevelopmentError& error) {
        return error.reason();
    } catch (const ImageError&) {
        return std::nullopt;
    }
    ADD_FAILURE() << url.path() << " was developed";
    return std::nullopt;
}

Light scene(int x, int y) {
    return {0.2 + 0.002 * x, 0.3, 0.1 + 0.003 * y};
}

TEST(BadRaw, ThatIsCutShortIsDamagedAtAnyLength) {
    const test::TemporaryFolder folder;
    for (const auto sensor : {TestCamera::Sensor::bayer, TestCamera::Sensor::linear}) {
        // The directory comes behind the pixels: without it, the file is no photo at all. Pixels are missing
        // where the directory points behind the end.
        auto contents = readAll(TestCamera{.sensor = sensor}.photograph(folder, "whole.dng", 64, 48, scene));
        for (const double share : {0.1, 0.5, 0.95})
            EXPECT_ANY_THROW(decoder().develop(
                folder.write("a.dng", contents.substr(0, static_cast<std::size_t>(
                                                             share * static_cast<double>(contents.size())))),
                {}));
        const std::uint32_t beyond = static_cast<std::uint32_t>(contents.size()) - 1000;
        const auto entry = contents.find(std::string("\x11\x01\x04\x00", 4)); // StripOffsets, long
        ASSERT_NE(entry, std::string::npos);
        for (int i = 0; i < 4; ++i)
            contents[entry + 8 + static_cast<std::size_t>(i)] = static_cast<char>(beyond >> (8 * i));
        EXPECT_EQ(reasonFor(folder.write("b.dng", contents)), Reason::damaged) << static_cast<int>(sensor);
    }
}

TEST(BadRaw, OfOtherTypesIsNoRaw) {
    const test::TemporaryFolder folder;
    const std::string jpeg =
        decoder().encodeJpeg(Bitmap(2, 1, std::array<std::uint8_t, 8>{0, 0, 0, 255, 9, 9, 9, 255}), 90);
    EXPECT_EQ(reasonFor(folder.write("a.nef", jpeg)), std::nullopt);
    EXPECT_EQ(reasonFor(folder.write("b.dng", "")), std::nullopt);
    EXPECT_EQ(reasonFor(folder.write("c.dng", "no photo")), std::nullopt);
    EXPECT_THROW(decoder().develop(folder.url().child("absent.dng"), {}), ImageError);
}

TEST(BadRaw, InACodingOfTheFutureIsUnsupported) {
    const test::TemporaryFolder folder;
    auto contents = readAll(TestCamera{}.photograph(folder, "a.dng", 64, 48, scene));
    const auto entry = contents.find(std::string("\x03\x01\x03\x00", 4)); // Compression, short
    ASSERT_NE(entry, std::string::npos);
    contents[entry + 8] = '\x42', contents[entry + 9] = '\xCD'; // 52546, JPEG XL
    EXPECT_EQ(reasonFor(folder.write("b.dng", contents)), Reason::unsupported);
}

TEST(BadRaw, OfTheCollectionIsDamaged) {
    LUMISORT_NEEDS_CORPUS();
    const auto url = [](const char* path) {
        return files::FileUrl::fromPath((*test::corpus() / path).string());
    };
    EXPECT_EQ(reasonFor(url("broken/exiv2/IMG_1361.dng")), Reason::damaged);
    EXPECT_EQ(reasonFor(url("broken/truncated-raw/fixture-Leica-M10.dng")), Reason::damaged);
}

TEST(BadRaw, StopsWhileItIsDeveloped) {
    const test::TemporaryFolder folder;
    for (const auto sensor : {TestCamera::Sensor::bayer, TestCamera::Sensor::xTrans}) {
        const auto url = TestCamera{.sensor = sensor}.photograph(folder, "a.dng", 2000, 1500, scene);
        for (const int milliseconds : {0, 5, 15, 30}) {
            std::stop_source source;
            const std::jthread stopper([&] {
                std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
                source.request_stop();
            });
            try {
                EXPECT_EQ(decoder().develop(url, {}, source.get_token()).image.width(), 2000); // was faster
            } catch (const tasks::Cancelled&) {
            }
        }
    }
}

} // namespace
} // namespace lumisort::images
