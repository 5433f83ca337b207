#include "similarity/database/StoredCaches.h"

#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "similarity/match/SharedModel.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cmath>
#include <fstream>

namespace lumisort::similarity {
namespace {

/// A folder of photos without likeness to each other, and a database.
struct StoredCachesTest : testing::Test {
    test::TemporaryFolder folder;
    std::string file = (folder.path() / "cache" / "fingerprints.sqlite").string();
    std::vector<library::Photo> photos;
    MatchProgress silent = [](double, std::string_view) {};

    void SetUp() override {
        for (int i = 0; i < 4; ++i) add(i);
    }
    std::string pathOf(int number) const {
        return (folder.path() / (std::to_string(number) + ".jpg")).string();
    }
    void writePhoto(int number, int pattern) const {
        images::Bitmap picture(160, 120);
        auto* to = picture.rgba().data();
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const double wave =
                    std::sin(x * (0.05 + 0.04 * pattern)) * std::cos(y * (0.2 - 0.04 * pattern));
                const auto value = static_cast<std::uint8_t>(127 + 120 * wave);
                for (const int sample : {int{value}, 255 - value, int{value}, 255})
                    *to++ = static_cast<std::uint8_t>(sample);
            }
        std::ofstream(pathOf(number), std::ios::binary) << images::decoder().encodeJpeg(picture, 90);
    }
    void add(int number) {
        writePhoto(number, number);
        photos.push_back({.url = files::FileUrl::fromPath(pathOf(number)), .date = {}});
    }
    MatchResult search(StoredCaches& stored, SimilarityMethod method, MatchCaches&& known = {}) {
        return stored.findMatches(photos, method, SimilarityLevel::balanced, known, silent, {});
    }
    library::FileStamp stampOf(int number) const {
        return library::FileStamp::read(files::FileSystem::real(), photos[number].url);
    }
};

TEST_F(StoredCachesTest, WhatOneRunComputesTheNextOneLoads) {
    for (const auto method : {SimilarityMethod::nearDuplicates, SimilarityMethod::visual}) {
        MatchResult first;
        {
            StoredCaches stored(file);
            first = search(stored, method);
        }
        StoredCaches stored(file);
        MatchCaches known;
        stored.load(known, photos, method, {});
        EXPECT_EQ(known.fingerprints, first.caches.fingerprints);
        EXPECT_EQ(known.fingerprints.size() + known.prints.size(), photos.size());
        for (const auto& [url, print] : known.prints) {
            EXPECT_EQ(*print.observation, *first.caches.prints.at(url).observation);
            EXPECT_EQ(print.stamp, first.caches.prints.at(url).stamp);
        }
        EXPECT_EQ(search(stored, method).groups, first.groups);
        EXPECT_EQ(stored.problem(), "");
    }
}

TEST_F(StoredCachesTest, ASearchTrustsStoredValuesOfUnchangedFilesAlone) {
    {
        // What no decoder says of these files, so that it shows where a value comes from.
        StoredCaches stored(file);
        MatchCaches forged;
        auto one = search(stored, SimilarityMethod::nearDuplicates).caches.fingerprints.at(photos[0].url);
        for (int i = 0; i < 4; ++i)
            forged.fingerprints[photos[i].url] = {.stamp = stampOf(i), .fingerprint = one.fingerprint};
        stored.store(forged, {});
    }
    StoredCaches stored(file);
    auto all = search(stored, SimilarityMethod::nearDuplicates);
    ASSERT_EQ(all.groups.size(), 1u);
    EXPECT_EQ(all.groups[0].photos.size(), 4u);

    writePhoto(3, 2); // changed: computed again, and like none of the others as they are remembered
    const auto changed = search(stored, SimilarityMethod::nearDuplicates);
    ASSERT_EQ(changed.groups.size(), 1u);
    EXPECT_EQ(changed.groups[0].photos.size(), 3u);
}

TEST_F(StoredCachesTest, MemoryComesBeforeTheDatabase) {
    StoredCaches stored(file);
    const auto fresh = search(stored, SimilarityMethod::nearDuplicates).caches;
    MatchCaches known;
    known.fingerprints[photos[1].url] = {.stamp = stampOf(1), .fingerprint = {}};
    stored.load(known, photos, SimilarityMethod::nearDuplicates, {});
    EXPECT_EQ(known.fingerprints.at(photos[1].url).fingerprint, VisualFingerprint());
}

TEST_F(StoredCachesTest, StoresNothingTwice) {
    {
        StoredCaches stored(file);
        search(stored, SimilarityMethod::visual);
    }
    sqlite3* other = nullptr;
    sqlite3_open(file.c_str(), &other);
    ASSERT_EQ(
        sqlite3_exec(other,
                     "CREATE TRIGGER none BEFORE INSERT ON entries BEGIN SELECT RAISE(FAIL, 'written'); END",
                     nullptr, nullptr, nullptr),
        SQLITE_OK);
    sqlite3_close(other);
    StoredCaches stored(file);
    search(stored, SimilarityMethod::visual);
    stored.store({}, {});
    EXPECT_EQ(stored.problem(), "");
}

TEST_F(StoredCachesTest, AnotherNetworksPrintsAndDamagedValuesAreNotFound) {
    MatchCaches caches;
    {
        StoredCaches stored(file);
        caches = search(stored, SimilarityMethod::visual).caches;
    }
    FingerprintDatabase(file).clear();
    {
        StoredCaches stored(file);
        auto other = std::make_shared<FeaturePrintIdentity>(sharedFeaturePrintModel()->identity());
        other->weightsSha256.front() ^= 1;
        for (auto& [url, print] : caches.prints) print.identity = other;
        stored.store(caches, {});
        stored.store(search(stored, SimilarityMethod::nearDuplicates).caches, {});
    }
    sqlite3* other = nullptr;
    sqlite3_open(file.c_str(), &other);
    sqlite3_exec(other,
                 "UPDATE entries SET value = x'00' WHERE algorithm ="
                 " (SELECT id FROM algorithms WHERE CAST(name AS TEXT) LIKE 'fingerprint%')",
                 nullptr, nullptr, nullptr);
    EXPECT_EQ(sqlite3_changes(other), 4);
    sqlite3_close(other);
    StoredCaches stored(file);
    MatchCaches known;
    stored.load(known, photos, SimilarityMethod::visual, {});
    stored.load(known, photos, SimilarityMethod::nearDuplicates, {});
    EXPECT_TRUE(known.prints.empty());
    EXPECT_TRUE(known.fingerprints.empty());
    EXPECT_EQ(search(stored, SimilarityMethod::nearDuplicates).unreadable, 0u);
}

TEST_F(StoredCachesTest, StopsAndWorksWithoutADatabase) {
    std::ofstream(folder.path() / "cache") << "a file where the folder should be";
    StoredCaches stored(file);
    const auto found = search(stored, SimilarityMethod::nearDuplicates);
    EXPECT_EQ(found.caches.fingerprints.size(), 4u);
    EXPECT_NE(found.storageProblem, "");
    std::stop_source stop;
    stop.request_stop();
    MatchCaches known;
    EXPECT_THROW(stored.load(known, photos, SimilarityMethod::nearDuplicates, stop.get_token()),
                 tasks::Cancelled);
}

} // namespace
} // namespace lumisort::similarity
