#include "similarity/Grouping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace lumisort::similarity {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Groups = std::vector<std::vector<std::string>>; // file names, anchors first

struct Collection {
    std::vector<library::Photo> photos;
    std::vector<VisualFingerprint> fingerprints;

    void add(const std::string& name, VisualFingerprint fingerprint) {
        photos.push_back({.url = files::FileUrl::fromPath("/photos/" + name)});
        fingerprints.push_back(std::move(fingerprint));
    }

    std::vector<GroupingItem> items() const {
        std::vector<GroupingItem> result;
        for (std::size_t i = 0; i < photos.size(); ++i) result.push_back({photos[i], fingerprints[i]});
        return result;
    }

    Groups grouped(SimilarityLevel level) const {
        Groups names;
        for (const auto& group : groupNearDuplicates(items(), level)) {
            EXPECT_EQ(group.anchor, group.photos.front());
            EXPECT_TRUE(group.distances.empty());
            names.emplace_back();
            for (const auto& photo : group.photos) names.back().emplace_back(photo.url.name());
        }
        return names;
    }
};

VisualFingerprint fingerprint(std::uint64_t hash) {
    VisualFingerprint made{
        .hash = hash, .colors = {}, .aspect = 1.5, .deviation = 0.2, .orientationHashes = {hash}};
    for (std::size_t i = 0; i < colourValueCount; ++i)
        made.colors.push_back(static_cast<double>(i) / colourValueCount);
    return made;
}

/// The same by comparing every photo with every anchor.
Groups groupedWithoutIndex(const Collection& collection, SimilarityLevel level) {
    std::vector<std::size_t> anchors;
    Groups groups;
    for (std::size_t i = 0; i < collection.photos.size(); ++i) {
        std::optional<std::pair<int, std::size_t>> best;
        for (std::size_t g = 0; g < anchors.size(); ++g) {
            const auto distance =
                collection.fingerprints[i].matchDistance(collection.fingerprints[anchors[g]], level);
            if (distance && (!best || *distance < best->first)) best = {*distance, g};
        }
        if (!best) {
            best = {0, groups.size()};
            anchors.push_back(i);
            groups.emplace_back();
        }
        groups[best->second].emplace_back(collection.photos[i].url.name());
    }
    std::erase_if(groups, [](const auto& group) { return group.size() < 2; });
    return groups;
}

TEST(Grouping, GivesWhatComparingWithEveryAnchorGives) {
    std::mt19937_64 random(17);
    const auto flip = [&](std::uint64_t hash, std::uint64_t most) {
        for (auto n = random() % (most + 1); n > 0; --n) hash ^= std::uint64_t{1} << (random() % 63);
        return hash;
    };
    // Small enough for the tree, and large enough for the tables; photos crowd around few scenes, so that
    // many anchors compete, also at equal distances.
    for (const std::size_t count : {std::size_t{150}, std::size_t{1500}}) {
        Collection collection;
        std::vector<VisualFingerprint> scenes;
        for (std::size_t i = 0; i < count; ++i) {
            VisualFingerprint photo;
            if (scenes.empty() || random() % 8 == 0) {
                photo = fingerprint(random() >> 1);
                photo.orientationHashes.resize(orientationCount);
                for (auto& hash : photo.orientationHashes) hash = flip(photo.hash, 20);
                scenes.push_back(photo);
            } else {
                photo = scenes[random() % scenes.size()];
            }
            photo.hash = flip(photo.hash, 12);
            photo.orientationHashes.front() = photo.hash;
            photo.aspect = random() % 2 ? 1.5 : 1 / 1.5;
            for (auto& color : photo.colors) color += 0.05 * static_cast<double>(random() % 3);
            collection.add(std::to_string(i), photo);
        }
        for (const auto level : allSimilarityLevels) {
            const auto groups = collection.grouped(level);
            EXPECT_GT(groups.size(), 3U);
            EXPECT_EQ(groups, groupedWithoutIndex(collection, level));
        }
    }
}

TEST(Grouping, PhotosJoinTheNearestAnchorAndNoMember) {
    Collection collection;
    collection.add("first", fingerprint(0x00FF));
    collection.add("second", fingerprint(0xFF00));
    collection.add("tie", fingerprint(0x0FF0));     // 8 bits from both
    collection.add("nearer", fingerprint(0x7F00));  // 1 bit from the second
    collection.add("alone", fingerprint(0x1F0F00)); // 8 bits from "nearer", more from any anchor
    EXPECT_THAT(collection.grouped(SimilarityLevel::balanced),
                ElementsAre(ElementsAre("first", "tie"), ElementsAre("second", "nearer")));
    EXPECT_THAT(Collection().grouped(SimilarityLevel::loose), IsEmpty());
}

} // namespace
} // namespace lumisort::similarity
