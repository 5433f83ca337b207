#include "similarity/NearDuplicateScan.h"

#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

namespace lumisort::similarity {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Photos whose contents say what their fingerprint is: the digits of a hash, "plain" or "broken".
struct NearDuplicateScanTest : testing::Test {
    test::MemoryFileSystem system;
    std::vector<library::Photo> photos;
    std::atomic<int> fingerprinted = 0;
    double now = 0, secondsPerPhoto = 0; // as the scan looks at the clock after every photo
    std::vector<std::pair<std::size_t, std::size_t>> progress;
    std::function<void(const std::string& path, const std::stop_token&)> whileReading =
        [](const std::string&, const std::stop_token&) {};

    void add(const std::string& name, const std::string& contents) {
        system.write("/p/" + name, contents);
        photos.push_back({.url = files::FileUrl::fromPath("/p/" + name)});
    }

    SimilarityResult scan(const FingerprintCache& cache = {}, int width = 4,
                          const std::stop_token& stop = {}) {
        const auto fingerprint = [this](const files::FileUrl& url, const std::stop_token& workerStop) {
            ++fingerprinted;
            const auto contents = system.contents(url.path()).value();
            whileReading(url.path(), workerStop);
            if (contents == "broken") throw images::ImageError("no photo");
            const bool plain = contents == "plain";
            const std::uint64_t hash = plain ? 0 : std::stoull(contents, nullptr, 16);
            return VisualFingerprint{.hash = hash,
                                     .colors = std::vector(colourValueCount, 0.5),
                                     .aspect = 1.5,
                                     .deviation = plain ? 0.0249 : 0.1,
                                     .orientationHashes = {hash}};
        };
        const NearDuplicateDependencies services{
            .system = system,
            .clock = {.now = {}, .uptimeSeconds = [this] { return now += secondsPerPhoto; }},
            .fingerprint = fingerprint};
        return scanNearDuplicates(
            services, photos, SimilarityLevel::balanced, cache, width,
            [this](std::size_t completed, std::size_t total) { progress.emplace_back(completed, total); },
            stop);
    }
};

TEST_F(NearDuplicateScanTest, GroupsInPathOrderAndCountsTheRest) {
    add("c", "ff");
    add("b", "fe");
    add("plain", "plain");
    add("broken", "broken");
    photos.push_back({.url = files::FileUrl::fromPath("/p/missing")});
    add("a", "ffffffff00");
    add("d", "7f");
    for (const int width : {0, 1, 4, 10}) {
        const auto result = scan({}, width);
        ASSERT_EQ(result.groups.size(), 1U);
        EXPECT_EQ(result.groups.front().photos, (std::vector{photos[1], photos[0], photos[6]}));
        EXPECT_EQ(result.unreadable, 2U);
        EXPECT_EQ(result.lowDetail, 1U);
        EXPECT_EQ(result.cache.size(), 5U);
        EXPECT_TRUE(result.cache.contains(files::FileUrl::fromPath("/p/plain")));
    }
}

TEST_F(NearDuplicateScanTest, ReadsOnlyWhatChangedSinceTheLastScan) {
    add("a", "1");
    add("b", "2");
    add("gone", "3");
    const auto first = scan();
    EXPECT_EQ(fingerprinted, 3);
    photos.pop_back();
    const auto second = scan(first.cache);
    EXPECT_EQ(fingerprinted, 3);
    EXPECT_EQ(second.groups, scan().groups);
    EXPECT_EQ(second.cache.size(), 2U);
    fingerprinted = 0;
    system.write("/p/b", "4"); // same size, later modification
    const auto third = scan(second.cache);
    EXPECT_EQ(fingerprinted, 1);
    EXPECT_EQ(third.cache.at(photos[1].url).fingerprint.hash, 4U);
}

TEST_F(NearDuplicateScanTest, AFileThatChangesWhileItIsReadIsUnreadable) {
    add("a", "1");
    add("b", "1");
    add("c", "1");
    whileReading = [&](const std::string& path, const std::stop_token&) {
        if (path == "/p/b") system.write(path, "2");
        if (path == "/p/c") system.remove(path);
    };
    const auto result = scan();
    EXPECT_EQ(result.unreadable, 2U);
    EXPECT_THAT(result.cache, ElementsAre(Pair(photos[0].url, testing::_)));
}

TEST_F(NearDuplicateScanTest, ReportsTheFirstTheLastAndTenASecond) {
    for (char name = 'a'; name <= 'j'; ++name) add(std::string(1, name), "1");
    secondsPerPhoto = 0.03;
    scan();
    EXPECT_THAT(progress, ElementsAre(Pair(1U, 10U), Pair(5U, 10U), Pair(9U, 10U), Pair(10U, 10U)));
}

TEST_F(NearDuplicateScanTest, AStopEndsTheScanAfterItsWorkers) {
    for (int i = 0; i < 50; ++i) add(std::to_string(i), "1");
    std::stop_source stop;
    std::atomic<int> inside = 0;
    whileReading = [&](const std::string&, const std::stop_token& workerStop) {
        ++inside;
        if (fingerprinted == 4) stop.request_stop();
        while (!workerStop.stop_requested()) std::this_thread::yield();
        --inside;
    };
    EXPECT_THROW(scan({}, 4, stop.get_token()), tasks::Cancelled);
    EXPECT_EQ(inside, 0);
    EXPECT_EQ(fingerprinted, 4);
    EXPECT_THAT(progress, IsEmpty());
}

} // namespace
} // namespace lumisort::similarity
