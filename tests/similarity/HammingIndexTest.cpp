#include "similarity/HammingIndex.h"

#include "platform/tasks/Cancellation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <utility>

namespace lumisort::similarity {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Candidate = HammingIndex::Candidate;
using Keys = std::vector<std::pair<std::uint64_t, int>>;

std::vector<Candidate> comparedWithAll(const Keys& keys, std::uint64_t hash, int radius) {
    std::vector<Candidate> found;
    for (const auto& [key, value] : keys)
        if (const int distance = std::popcount(key ^ hash); distance <= radius)
            found.push_back({value, distance});
    std::ranges::sort(found, {}, [](const Candidate& c) { return std::pair(c.distance, c.value); });
    return found;
}

std::uint64_t withBitsFlipped(std::uint64_t hash, int count, std::mt19937_64& random) {
    for (int i = 0; i < count; ++i) hash ^= std::uint64_t{1} << (random() % 64);
    return hash;
}

/// Keys as an anchor's orientations give them: some random, some near others, some the same.
Keys clusteredKeys(std::size_t count, std::mt19937_64& random) {
    Keys keys;
    while (keys.size() < count) {
        const std::uint64_t known = keys.empty() ? 0 : keys[random() % keys.size()].first;
        const auto hash =
            random() % 3 ? withBitsFlipped(known, static_cast<int>(random() % 14), random) : random();
        keys.emplace_back(hash, static_cast<int>(random() % count));
    }
    return keys;
}

TEST(HammingIndex, FindsWhatComparingWithAllKeysFinds) {
    std::mt19937_64 random(3);
    // A tree, the last tree, the first tables, and tables whose buckets have grown.
    for (const std::size_t count : {std::size_t{1}, std::size_t{40}, HammingIndex::treeKeyLimit,
                                    HammingIndex::treeKeyLimit + 400, std::size_t{30'000}}) {
        const auto keys = clusteredKeys(count, random);
        HammingIndex index;
        for (const auto& [hash, value] : keys) index.insert(hash, value);
        for (const int radius : {-1, 0, 1, 2, 3, 4, 7, 8, 11, 12, 13, 20, 40, 64})
            for (int i = 0; i < (radius > 13 ? 1 : 12); ++i) {
                const auto near = withBitsFlipped(keys[random() % count].first, i, random);
                const auto hash = i % 4 == 3 ? random() : near;
                ASSERT_EQ(index.candidates(hash, radius), comparedWithAll(keys, hash, radius))
                    << count << " keys, radius " << radius;
            }
    }
}

TEST(HammingIndex, OneKeyKeepsAllItsValues) {
    HammingIndex index;
    EXPECT_THAT(index.candidates(0, 64), IsEmpty());
    index.insert(0b1111, 7);
    index.insert(0b1111, 2);
    index.insert(0b1100, 5);
    EXPECT_EQ(index.nodes().size(), 2U);
    EXPECT_THAT(index.candidates(0b1111, 0), ElementsAre(Candidate{2, 0}, Candidate{7, 0}));
    EXPECT_THAT(index.candidates(0b1110, 1), ElementsAre(Candidate{2, 1}, Candidate{5, 1}, Candidate{7, 1}));
}

TEST(HammingIndex, ASearchCanBeStopped) {
    std::stop_source source;
    source.request_stop();
    for (const int keys : {1, static_cast<int>(HammingIndex::treeKeyLimit) + 1}) {
        HammingIndex index;
        for (int i = 0; i < keys; ++i) index.insert(static_cast<std::uint64_t>(i), i);
        EXPECT_THROW(index.candidates(0, 12, source.get_token()), tasks::Cancelled);
    }
}

} // namespace
} // namespace lumisort::similarity
