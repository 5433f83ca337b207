#include "similarity/VisualFingerprint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace lumisort::similarity {
namespace {

constexpr auto strict = SimilarityLevel::strict;
constexpr auto balanced = SimilarityLevel::balanced;
constexpr auto loose = SimilarityLevel::loose;

/// A grey layout that differs in every orientation, and orientation hashes too far apart to match one
/// another.
VisualFingerprint textured() {
    VisualFingerprint made{.colors = {}, .aspect = 1.5, .deviation = 0.2, .orientationHashes = {}};
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) made.colors.insert(made.colors.end(), 3, 0.2 + 0.05 * y + 0.03 * x);
    for (std::uint64_t k = 0; k < 8; ++k) made.orientationHashes.push_back(std::uint64_t{0x7F} << (8 * k));
    made.hash = made.orientationHashes.front();
    return made;
}

/// `photo` after an orientation, as its file would be fingerprinted.
VisualFingerprint oriented(const VisualFingerprint& photo, Orientation orientation) {
    VisualFingerprint made = photo;
    made.hash = photo.orientationHashes[static_cast<std::size_t>(std::ranges::find(hashOrder, orientation) -
                                                                 hashOrder.begin())];
    if (swapsSides(orientation)) made.aspect = 1 / photo.aspect;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) {
            const auto source = sourceCell(orientation, {y, x}, 8);
            for (int channel = 0; channel < 3; ++channel)
                made.colors[3 * (8 * y + x) + channel] =
                    photo.colors[3 * (8 * source.y + source.x) + channel];
        }
    return made;
}

constexpr auto none = std::optional<int>();

TEST(Matching, EveryOrientationOfAPhotoMatchesIt) {
    const auto photo = textured();
    for (int k = 0; k < 8; ++k) {
        const auto orientation = hashOrder[static_cast<std::size_t>(k)];
        for (const auto level : allSimilarityLevels)
            EXPECT_EQ(oriented(photo, orientation).matchDistance(photo, level), 0) << k;
        EXPECT_NEAR(*oriented(photo, orientation).structureCorrelation(photo, orientation), 1, 1e-12);
    }
}

TEST(Matching, EachTestHasItsLimit) {
    const auto anchor = textured();
    const auto shifted = [](double by) {
        return [by](VisualFingerprint& f) {
            for (double& color : f.colors) color += by;
        };
    };
    const auto aspect = [](double logarithm) {
        return [logarithm](VisualFingerprint& f) { f.aspect = 1.5 * std::exp(logarithm); };
    };
    const auto bits = [](std::uint64_t mask) { return [mask](VisualFingerprint& f) { f.hash ^= mask; }; };
    struct Case {
        const char* what;
        std::function<void(VisualFingerprint&)> change;
        std::optional<int> strict, balanced, loose;
    };
    for (const auto& c : {
             Case{"as it is", [](auto&) {}, 0, 0, 0},
             Case{"too plain", [](auto& f) { f.deviation = 0.02; }, none, none, none},
             Case{"just not too plain", [](auto& f) { f.deviation = 0.025; }, 0, 0, 0},
             Case{"aspect 3 %", aspect(0.03), none, 0, 0},
             Case{"aspect −7 %", aspect(-0.07), none, none, 0},
             Case{"aspect not a number", [](auto& f) { f.aspect = std::nan(""); }, none, none, none},
             Case{"4 bits", bits(0xF << 10), 4, 4, 4},
             Case{"5 bits", bits(0x1F << 10), none, 5, 5},
             Case{"8 bits", bits(0xFF << 10), none, 8, 8},
             Case{"9 bits", bits(0x1FF << 10), none, none, 9},
             Case{"13 bits", bits(0x1FFF << 10), none, none, none},
             Case{"colours 6 %", shifted(0.06), 0, 0, 0},
             Case{"colours 10 %", shifted(-0.10), none, 0, 0},
             Case{"colours 17 %", shifted(0.17), none, none, 0},
             Case{"colours 20 %", shifted(0.20), none, none, none},
             Case{"no colours", [](auto& f) { f.colors.clear(); }, none, none, none},
             Case{"other number of colours", [](auto& f) { f.colors.pop_back(); }, none, none, none},
         }) {
        auto candidate = anchor;
        c.change(candidate);
        EXPECT_EQ(candidate.matchDistance(anchor, strict), c.strict) << c.what;
        EXPECT_EQ(candidate.matchDistance(anchor, balanced), c.balanced) << c.what;
        EXPECT_EQ(candidate.matchDistance(anchor, loose), c.loose) << c.what;
    }
}

TEST(Matching, TheNearestOrientationCounts) {
    auto anchor = textured();
    anchor.aspect = 1; // every orientation has the right shape
    auto candidate = oriented(anchor, Orientation::mirrorMainDiagonal);
    candidate.hash ^= 0b11100000;
    anchor.orientationHashes[5] = candidate.hash; // nearer, but the brightness is laid out otherwise
    EXPECT_EQ(candidate.matchDistance(anchor, loose), 3);
    anchor.orientationHashes[0] =
        candidate.hash ^ 1; // upright needs no correlation, and its colours are near
    EXPECT_EQ(candidate.matchDistance(anchor, loose), 1);
}

TEST(Matching, IncompleteFingerprintsMatchUprightOnly) {
    auto anchor = textured();
    anchor.colors.resize(3);
    auto candidate = anchor;
    EXPECT_EQ(candidate.matchDistance(anchor, strict), 0);
    candidate.hash = anchor.orientationHashes[2]; // a half turn, which needs all 192 values
    EXPECT_EQ(candidate.matchDistance(anchor, strict), none);
    anchor = textured();
    anchor.orientationHashes.clear();
    EXPECT_EQ(textured().matchDistance(anchor, strict), 0);
}

TEST(Matching, CorrelationTellsStructureFromBrightness) {
    const auto upright = Orientation::unchanged;
    const auto photo = textured();
    auto other = photo;
    for (double& color : other.colors) color = 1 - color;
    EXPECT_NEAR(*photo.structureCorrelation(other, upright), -1, 1e-12);
    other.colors.assign(colourValueCount, 0.4);
    EXPECT_EQ(photo.structureCorrelation(other, upright), std::nullopt);
    EXPECT_EQ(other.structureCorrelation(photo, upright), std::nullopt);
    other.colors.resize(3);
    EXPECT_EQ(photo.structureCorrelation(other, upright), std::nullopt);
}

TEST(SimilarityLevels, AreNamedExactly) {
    for (const auto level : allSimilarityLevels)
        EXPECT_EQ(similarityLevelNames.find(storedName(level)), level);
    EXPECT_EQ(storedName(balanced), "Balanced");
    for (const auto* other : {"", "strict", "Strict ", "Balance"})
        EXPECT_EQ(similarityLevelNames.find(other), std::nullopt);
}

} // namespace
} // namespace lumisort::similarity
