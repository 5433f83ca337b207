#include "platform/images/Decoder.h"
#include "similarity/Fingerprinting.h"
#include "similarity/NearDuplicateScan.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

namespace lumisort::similarity {
namespace {

namespace fs = std::filesystem;

TEST(RealPhotos, DamagedAndHostileFilesAreCountedAtMost) {
    LUMISORT_NEEDS_CORPUS();
    std::size_t fingerprinted = 0, refused = 0;
    for (const char* folder : {"broken", "orientation"})
        for (const auto& entry : fs::recursive_directory_iterator(*test::corpus() / folder)) {
            if (!entry.is_regular_file()) continue;
            try {
                const auto made = fingerprint(files::FileUrl::fromPath(entry.path().string()));
                ++fingerprinted;
                EXPECT_EQ(made.colors.size(), colourValueCount);
                EXPECT_EQ(made.orientationHashes.size(), orientationCount);
                EXPECT_TRUE(made.aspect > 0 && made.deviation >= 0 && made.deviation <= 0.5) << entry.path();
            } catch (const images::ImageError&) {
                ++refused;
            }
        }
    EXPECT_GT(fingerprinted, 40U);
    EXPECT_GT(refused, 100U);
}

/// A photo and its turned and mirrored copies, from whole files: the decoder's filter must be as even as
/// ours.
TEST(RealPhotos, TurnedAndMirroredFilesHaveTheTurnedHashes) {
    LUMISORT_NEEDS_CORPUS();
    const auto folder = *test::corpus() / "groups/pdq/reg-test-input/dih";
    const auto of = [&](const char* name) {
        return fingerprint(files::FileUrl::fromPath((folder / name).string()));
    };
    const auto original = of("bridge-1-original.jpg");
    struct Case {
        const char* name;
        Orientation orientation;
    };
    for (const auto& [name, orientation] :
         {Case{"bridge-2-rotate-90.jpg", Orientation::quarterTurnCounterClockwise},
          Case{"bridge-3-rotate-180.jpg", Orientation::halfTurn},
          Case{"bridge-4-rotate-270.jpg", Orientation::quarterTurnClockwise},
          Case{"bridge-5-flipx.jpg", Orientation::mirrorTopBottom},
          Case{"bridge-6-flipy.jpg", Orientation::mirrorLeftRight},
          Case{"bridge-7-flip-plus-1.jpg", Orientation::mirrorMainDiagonal},
          Case{"bridge-8-flip-minus-1.jpg", Orientation::mirrorAntiDiagonal}}) {
        const auto turned = of(name);
        const auto place = std::ranges::find(hashOrder, orientation) - hashOrder.begin();
        const int bits =
            std::popcount(turned.hash ^ original.orientationHashes[static_cast<std::size_t>(place)]);
        EXPECT_LE(bits, 2) << name; // the copies were encoded anew, which moves a value across the median
        EXPECT_NEAR(turned.aspect, swapsSides(orientation) ? 1 / original.aspect : original.aspect, 0.01)
            << name;
    }
}

/// The labelled photos: copies of one photo come together at balanced, and nothing else does at any level.
TEST(RealPhotos, CopiesAreGroupedAndOtherPhotosAreNot) {
    LUMISORT_NEEDS_CORPUS();
    std::ifstream table(*test::corpus() / "groups" / "groups.csv");
    std::map<files::FileUrl, std::pair<std::string, std::string>> labels; // group, relation
    std::vector<library::Photo> photos;
    std::string line, path, group, relation;
    for (std::getline(table, line); std::getline(table, line);) {
        std::istringstream fields(line);
        std::getline(std::getline(std::getline(fields, path, ','), group, ','), relation, ',');
        photos.push_back({.url = files::FileUrl::fromPath((*test::corpus() / path).string())});
        labels[photos.back().url] = {group, relation};
    }
    const std::set<std::string> copies{"original", "exact",    "metadata-only", "reencode",
                                       "resize",   "mirrored", "rotated",       "orientation"};

    FingerprintCache cache;
    for (const auto level : allSimilarityLevels) {
        auto result = scanNearDuplicates(NearDuplicateDependencies::real(), photos, level, cache, 4, {});
        std::map<files::FileUrl, files::FileUrl> anchors;
        for (const auto& found : result.groups)
            for (const auto& photo : found.photos) {
                EXPECT_EQ(labels.at(photo.url).first, labels.at(found.anchor.url).first)
                    << photo.url.path() << " at " << storedName(level);
                anchors[photo.url] = found.anchor.url;
            }
        cache = std::move(result.cache);
        if (level != SimilarityLevel::balanced) continue;
        std::map<std::string, std::set<files::FileUrl>> anchorsOfScene;
        for (const auto& [url, label] : labels) {
            const auto& [scene, relationToScene] = label;
            // Some copies in this group were turned by a few degrees or squeezed into a square.
            if (!copies.contains(relationToScene) || scene == "ukbench00120") continue;
            EXPECT_TRUE(anchors.contains(url)) << "in no group: " << url.path();
            anchorsOfScene[scene].insert(anchors[url]);
        }
        EXPECT_EQ(anchorsOfScene.size(), 6U);
        for (const auto& [scene, found] : anchorsOfScene) EXPECT_EQ(found.size(), 1U) << scene;
    }
}

} // namespace
} // namespace lumisort::similarity
