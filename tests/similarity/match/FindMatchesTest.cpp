#include "similarity/match/FindMatches.h"

#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cmath>

namespace lumisort::similarity {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

/// A picture of waves that `seed` sets, as a JPEG file.
std::string waves(int seed, int quality) {
    constexpr int width = 192, height = 128;
    images::Bitmap bitmap(width, height);
    auto* to = bitmap.rgba().data();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            for (const int channel : {1, 2, 3}) {
                const double wave = std::sin(x * 0.013 * seed * channel + seed) * std::cos(y * 0.031 * seed);
                *to++ = static_cast<std::uint8_t>(128 + 120 * wave);
            }
            *to++ = 255;
        }
    return images::decoder().encodeJpeg(bitmap, quality);
}

class FindMatchesTest : public testing::Test {
protected:
    void add(const std::string& name, const std::string& contents) {
        const auto url = folder_.write(name, contents);
        photos_.push_back({.url = url, .bytes = static_cast<std::int64_t>(contents.size())});
    }

    MatchResult find(SimilarityMethod method, const MatchCaches& known = {}) {
        texts_.clear();
        const auto progress = [this](double fraction, std::string_view text) {
            EXPECT_GE(fraction, 0);
            EXPECT_LE(fraction, 1);
            texts_.emplace_back(text);
        };
        return findMatches(photos_, method, SimilarityLevel::balanced, known, progress, stop_.get_token());
    }

    static std::vector<std::string> names(const MatchResult& result) {
        std::vector<std::string> names;
        for (const auto& group : result.groups) {
            EXPECT_EQ(group.anchor, group.photos.front());
            std::string line;
            for (const auto& photo : group.photos) line += std::string(photo.url.name()) + " ";
            names.push_back(line);
        }
        return names;
    }

    test::TemporaryFolder folder_;
    std::vector<library::Photo> photos_;
    std::vector<std::string> texts_;
    std::stop_source stop_;
};

TEST_F(FindMatchesTest, FindsWhatEachMethodStandsFor) {
    add("a.jpg", waves(1, 90));
    add("b.jpg", waves(1, 60)); // the same picture in another file
    add("c.jpg", waves(1, 90)); // the same file
    add("d.jpg", waves(7, 90));
    add("e.jpg", "no photo");

    const auto exact = find(SimilarityMethod::exact);
    EXPECT_THAT(names(exact), ElementsAre("a.jpg c.jpg "));
    EXPECT_EQ(exact.unreadable, 0U);

    const auto near = find(SimilarityMethod::nearDuplicates);
    EXPECT_THAT(names(near), ElementsAre("a.jpg b.jpg c.jpg "));
    EXPECT_EQ(near.unreadable, 1U);
    EXPECT_EQ(near.caches.fingerprints.size(), 4U);
    EXPECT_TRUE(near.caches.prints.empty());
    ASSERT_FALSE(texts_.empty());
    EXPECT_EQ(texts_.front(), "Analyzing 1 of 5…");
    EXPECT_EQ(texts_.back(), "Grouping matches…");

    const auto visual = find(SimilarityMethod::visual);
    EXPECT_THAT(names(visual), ElementsAre("a.jpg b.jpg c.jpg "));
    EXPECT_EQ(visual.groups.front().distances.size(), 2U);
    EXPECT_THAT(visual.failures, ElementsAre(StartsWith("e.jpg: ")));
    EXPECT_EQ(visual.caches.prints.size(), 4U);
    EXPECT_EQ(texts_.front(), "Analyzing 1 of 5…");

    // With the caches of the last search nothing is computed again: prints are the very same objects.
    const auto again = find(SimilarityMethod::visual, visual.caches);
    EXPECT_EQ(again.groups, visual.groups);
    for (const auto& [url, print] : again.caches.prints)
        EXPECT_EQ(print.observation, visual.caches.prints.at(url).observation);
}

TEST_F(FindMatchesTest, EveryMethodThrowsWhenStopped) {
    add("a.jpg", waves(1, 90));
    add("b.jpg", waves(1, 90));
    stop_.request_stop();
    for (const auto method : allSimilarityMethods) EXPECT_THROW(find(method), tasks::Cancelled);
}

} // namespace
} // namespace lumisort::similarity
