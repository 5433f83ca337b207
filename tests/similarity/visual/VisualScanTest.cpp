#include "similarity/visual/VisualScan.h"

#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "similarity/visual/PhotoDetail.h"
#include "similarity/visual/VisualScanError.h"
#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>

namespace lumisort::similarity {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

/// A picture with detail whose top left pixel is `mark`.
images::Bitmap marked(std::uint8_t mark) {
    images::Bitmap photo(64, 32, std::vector<std::uint8_t>(4 * 64 * 32, 255));
    std::fill_n(photo.rgba().begin(), 4 * 64 * 16, std::uint8_t{0});
    for (std::size_t alpha = 3; alpha < photo.rgba().size(); alpha += 4) photo.rgba()[alpha] = 255;
    photo.rgba()[0] = mark;
    return photo;
}

images::Bitmap flat(std::uint8_t tone) {
    return {40, 40, std::vector<std::uint8_t>(4 * 40 * 40, tone)};
}

/// Files whose contents say what becomes of them: "flat", "broken", "printless", "nan", or a number n, whose
/// print lies n hundredths of a radian round a circle. Counts what the engine asks for.
struct Darkroom {
    test::MemoryFileSystem system;
    std::vector<library::Photo> photos;
    std::atomic<int> pictures = 0;
    std::atomic<int> prints = 0;
    std::function<void(const files::FileUrl&)> onPicture = [](const files::FileUrl&) {};
    FeaturePrintIdentity identity{.name = "circle", .weightsSha256 = "00", .revision = 2};
    double uptime = 0;
    double step = 0; ///< by which the clock moves on whenever it is read

    library::Photo add(const std::string& path, const std::string& contents) {
        system.write(path, contents);
        photos.push_back(
            {.url = files::FileUrl::fromPath(path), .bytes = 1, .width = 2, .height = 3, .date = {}});
        return photos.back();
    }
    VisualScan engine() {
        return {{.identity = std::make_shared<const FeaturePrintIdentity>(identity),
                 .picture =
                     [this](const files::FileUrl& url, const std::stop_token&) {
                         ++pictures;
                         onPicture(url);
                         const std::string contents = system.contents(url.path()).value_or("broken");
                         if (contents == "broken") throw images::ImageError("The file is no photo.");
                         if (contents == "flat") return flat(200);
                         if (contents == "printless") return marked(255);
                         if (contents == "nan") return marked(254);
                         return marked(static_cast<std::uint8_t>(std::stoi(contents)));
                     },
                 .print =
                     [this](const images::Bitmap& photo) {
                         ++prints;
                         const int mark = photo.rgba()[0];
                         if (mark == 255)
                             throw FeaturePrintError(FeaturePrintFailure::noPrint, "No features.");
                         FeaturePrint print;
                         print.values[0] = static_cast<float>(std::cos(mark / 100.0));
                         print.values[200] = static_cast<float>(std::sin(mark / 100.0));
                         if (mark == 254) print.values[3] = std::numeric_limits<float>::quiet_NaN();
                         return print;
                     }},
                system,
                {.now = {}, .uptimeSeconds = [this] { return uptime += step; }}};
    }
    VisualScanResult scan(SimilarityLevel level = SimilarityLevel::balanced,
                          const FeaturePrintCache& cache = {}, int width = 4,
                          const std::stop_token& stop = {}) {
        return engine().scan(photos, level, cache, width, [](double, std::string_view) {}, stop);
    }
};

std::vector<std::string> names(const SimilarityGroup& group) {
    std::vector<std::string> result;
    for (const auto& photo : group.photos) result.emplace_back(photo.url.name());
    return result;
}

TEST(VisualScan, GroupsWhatTheLevelLetsThrough) {
    // Chords of 0.6, 0.7, 0.8 and 0.9 on the circle.
    for (const auto& [angle, strict, balanced, loose] : {std::tuple{61, true, true, true},
                                                         {72, false, true, true},
                                                         {82, false, false, true},
                                                         {93, false, false, false}}) {
        Darkroom room;
        room.add("/p/a.jpg", "0");
        room.add("/p/b.jpg", std::to_string(angle));
        EXPECT_EQ(room.scan(SimilarityLevel::strict).groups.size(), strict) << angle;
        EXPECT_EQ(room.scan(SimilarityLevel::balanced).groups.size(), balanced) << angle;
        EXPECT_EQ(room.scan(SimilarityLevel::loose).groups.size(), loose) << angle;
    }
}

TEST(VisualScan, GroupsInPathOrderWithDistances) {
    Darkroom room;
    room.add("/p/z.jpg", "10");
    room.add("/p/é.jpg", "150");        // composed
    room.add("/p/e\u0301b.jpg", "151"); // decomposed; sorts behind it by code points of the composed form
    const auto anchor = room.add("/p/a.jpg", "0");
    room.add("/p/n.jpg", "70");
    room.add("/p/alone.jpg", "240");
    const auto result = room.scan();
    ASSERT_THAT(result.groups, SizeIs(2));
    EXPECT_EQ(result.groups[0].anchor, anchor);
    EXPECT_THAT(names(result.groups[0]), ElementsAre("a.jpg", "n.jpg", "z.jpg"));
    EXPECT_THAT(names(result.groups[1]), ElementsAre("é.jpg", "e\u0301b.jpg"));
    const auto chord = [](int angle) {
        return testing::FloatNear(static_cast<float>(2 * std::sin(angle / 200.0)), 1e-6F);
    };
    EXPECT_THAT(result.groups[0].distances,
                UnorderedElementsAre(Pair(files::FileUrl::fromPath("/p/n.jpg"), chord(70)),
                                     Pair(files::FileUrl::fromPath("/p/z.jpg"), chord(10))));
    EXPECT_THAT(result.cache, SizeIs(6));
    EXPECT_THAT(result.failures, IsEmpty());
}

TEST(VisualScan, SaysOfEachPhotoWhyItHasNoPrint) {
    Darkroom room;
    room.add("/p/1.jpg", "printless");
    room.add("/p/2.jpg", "broken");
    room.add("/p/3.jpg", "flat");
    room.add("/p/4.jpg", "40");
    room.add("/p/5.jpg", "50");
    room.add("/p/6.jpg", "60");
    room.photos.push_back({.url = files::FileUrl::fromPath("/p/7.jpg"), .date = {}}); // not there
    room.onPicture = [&](const files::FileUrl& url) {
        if (url.name() == "6.jpg") room.system.write(url.path(), "60 and more");
    };
    const auto result = room.scan();
    EXPECT_THAT(result.failures, ElementsAre("1.jpg: No features.", "2.jpg: The file is no photo.",
                                             "3.jpg: Too little image detail; use Exact Copies.",
                                             "6.jpg: The file changed while it was analyzed.",
                                             testing::StartsWith("7.jpg: Could not ")));
    EXPECT_THAT(result.failures.back(), testing::Not(testing::HasSubstr("/p/")));
    EXPECT_THAT(result.groups, SizeIs(1));
    EXPECT_THAT(result.cache, SizeIs(2));
    EXPECT_EQ(room.prints, 4); // the flat and the broken photo never got as far
}

TEST(VisualScan, SmallLibraries) {
    Darkroom room;
    EXPECT_THAT(room.scan().groups, IsEmpty());
    room.add("/p/b.jpg", "flat");
    room.add("/p/a.jpg", "broken");
    try {
        room.scan();
        ADD_FAILURE() << "no photo had a print";
    } catch (const VisualScanError& error) {
        EXPECT_EQ(error.failure(), VisualScanFailure::nothingAnalyzed);
        EXPECT_STREQ(error.what(),
                     "Visual analysis could not analyze any photos. a.jpg: The file is no photo.");
    }
    room.photos.clear();
    room.add("/p/c.jpg", "1");
    const auto one = room.scan();
    EXPECT_THAT(one.groups, IsEmpty());
    EXPECT_THAT(one.failures, IsEmpty());
    EXPECT_THAT(one.cache, SizeIs(1));
}

TEST(VisualScan, PrintsAgainOnlyWhatChanged) {
    Darkroom room;
    room.add("/p/a.jpg", "1");
    room.add("/p/b.jpg", "2");
    room.add("/p/c.jpg", "150");
    const auto first = room.scan();
    const auto newPrints = [&](const FeaturePrintCache& cache) {
        room.pictures = room.prints = 0;
        const auto result = room.scan(SimilarityLevel::balanced, cache);
        EXPECT_EQ(room.pictures, room.prints);
        EXPECT_EQ(result.cache.size(), room.photos.size());
        return room.prints.load();
    };
    EXPECT_EQ(newPrints(first.cache), 0);
    EXPECT_EQ(room.scan(SimilarityLevel::balanced, first.cache).groups, first.groups);

    room.system.write("/p/b.jpg", "3");
    EXPECT_EQ(newPrints(first.cache), 1);
    room.photos.pop_back(); // its print leaves the cache
    EXPECT_EQ(newPrints(room.scan(SimilarityLevel::balanced, first.cache).cache), 0);
    room.identity.weightsSha256 = "01";
    EXPECT_EQ(newPrints(first.cache), 2);
}

TEST(VisualScan, AnotherRevisionFailsBeforeAnyWork) {
    Darkroom room;
    room.add("/p/a.jpg", "1");
    room.identity.revision = 1;
    room.system.before = [](std::string_view operation, const std::string&) { ADD_FAILURE() << operation; };
    try {
        room.scan();
        ADD_FAILURE() << "scanned with another revision";
    } catch (const FeaturePrintError& error) {
        EXPECT_EQ(error.failure(), FeaturePrintFailure::unsupported);
    }
}

TEST(VisualScan, PrintsWithoutADistanceFailTheRun) {
    Darkroom room;
    room.add("/p/a.jpg", "1");
    room.add("/p/b.jpg", "nan");
    try {
        room.scan();
        ADD_FAILURE() << "grouped prints without a distance";
    } catch (const VisualScanError& error) {
        EXPECT_EQ(error.failure(), VisualScanFailure::corruptFile);
    }
}

TEST(VisualScan, ReportsProgressTenTimesASecond) {
    Darkroom room;
    room.step = 0.06;
    for (const auto* name : {"a", "b", "c", "d", "e"}) room.add(std::string("/p/") + name, "7");
    std::vector<std::pair<double, std::string>> reports;
    room.engine().scan(room.photos, SimilarityLevel::balanced, {}, 1,
                       [&](double fraction, std::string_view text) { reports.emplace_back(fraction, text); },
                       {});
    const auto report = [](double fraction, const char* text) {
        return Pair(testing::DoubleNear(fraction, 1e-12), text);
    };
    EXPECT_THAT(reports,
                ElementsAre(report(0.15, "Analyzing 1 of 5…"), report(0.45, "Analyzing 3 of 5…"),
                            report(0.75, "Analyzing 5 of 5…"), report(0.75, "Indexing visual features…"),
                            report(0.8, "Grouping matches…"), report(0.88, "Grouping 2 of 5…"),
                            report(0.96, "Grouping 4 of 5…"), report(1.0, "Grouping 5 of 5…")));
}

TEST(VisualScan, FindsTheSameWhateverTheConcurrency) {
    Darkroom room;
    for (int i = 0; i < 700; ++i)
        room.add("/p/" + std::to_string(i * 7919 % 1000) + ".jpg",
                 i % 50 == 9 ? "flat" : std::to_string(i * 31 % 250));
    const auto alone = room.scan(SimilarityLevel::strict, {}, 1);
    const auto together = room.scan(SimilarityLevel::strict, {}, 4);
    EXPECT_GT(alone.groups.size(), 2U);
    EXPECT_EQ(alone.groups, together.groups);
    EXPECT_EQ(alone.failures, together.failures);
}

TEST(VisualScan, StopsAtAnyMoment) {
    const auto stopped = [](auto&& arm) {
        Darkroom room;
        for (int i = 0; i < 40; ++i) room.add("/p/" + std::to_string(i), std::to_string(i));
        std::stop_source source;
        const auto progress = arm(room, source);
        EXPECT_THROW(
            room.engine().scan(room.photos, SimilarityLevel::strict, {}, 2, progress, source.get_token()),
            tasks::Cancelled);
        return room.prints.load();
    };
    using Progress = VisualScan::Progress;
    const Progress silent = [](double, std::string_view) {};
    EXPECT_EQ(stopped([&](Darkroom&, std::stop_source& source) {
                  source.request_stop();
                  return silent;
              }),
              0);
    EXPECT_LE(stopped([&](Darkroom& room, std::stop_source& source) {
                  room.onPicture = [&](const files::FileUrl&) { source.request_stop(); };
                  return silent;
              }),
              2);
    for (const std::string_view moment : {"Analyzing 40", "Indexing", "Grouping matches", "Grouping 40"})
        EXPECT_EQ(stopped([&](Darkroom&, std::stop_source& source) -> Progress {
                      return [&source, moment](double, std::string_view text) {
                          if (text.starts_with(moment)) source.request_stop();
                      };
                  }),
                  40)
            << moment;
}

TEST(PhotoDetail, IsTheDeviationOfTheTones) {
    EXPECT_EQ(photoDetail(flat(90)), 0); // transparent in part: still one tone
    EXPECT_NEAR(photoDetail(marked(0)), 0.5, 1e-9);
    // A grey picture with half of it a little brighter: just above and just below the limit, 6.375 levels.
    for (const auto& [difference, enough] : {std::pair{14, true}, {12, false}}) {
        images::Bitmap photo = flat(100);
        for (std::size_t i = 0; i < photo.rgba().size(); ++i)
            photo.rgba()[i] =
                static_cast<std::uint8_t>(i % 4 == 3 ? 255 : 100 + (i % 160 < 80 ? difference : 0));
        EXPECT_EQ(photoDetail(photo) >= leastDetail, enough) << difference;
    }
    // One black pixel in a large white picture is averaged away.
    images::Bitmap speck(640, 640, std::vector<std::uint8_t>(4 * 640 * 640, 255));
    std::fill_n(speck.rgba().begin(), 3, std::uint8_t{0});
    EXPECT_LT(photoDetail(speck), 0.001);
    // Transparent parts count as white, whatever colour they hide.
    images::Bitmap hidden = marked(0);
    for (std::size_t alpha = 3; alpha < hidden.rgba().size(); alpha += 4) hidden.rgba()[alpha] = 0;
    EXPECT_EQ(photoDetail(hidden), 0);
}

} // namespace
} // namespace lumisort::similarity
