#include "app/diagnostics/PerformanceDiagnostics.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <vector>

namespace lumisort::app {

namespace {

/// A sampler in a world where the test moves the clock and runs the main thread.
class PerformanceSamplerTest : public testing::Test {
protected:
    PerformanceSampler sampler() {
        return PerformanceSampler(
            (folder_.path() / "perf.json").string(),
            {.system = files::FileSystem::real(),
             .clock = {.now = [] { return time::Timestamp(); }, .uptimeSeconds = [this] { return now_; }},
             .post = [this](std::function<void()> probe) { queue_.push_back(probe); },
             .footprintBytes = [this] { return footprint_; }});
    }

    void runMainThread() {
        for (auto& probe : std::exchange(queue_, {})) probe();
    }

    std::string output() const {
        std::ifstream file(folder_.path() / "perf.json");
        return {std::istreambuf_iterator<char>(file), {}};
    }

    test::TemporaryFolder folder_;
    double now_ = 1000;
    std::int64_t footprint_ = 0;
    std::vector<std::function<void()>> queue_;
};

} // namespace

TEST_F(PerformanceSamplerTest, ABlockedMainThreadIsOneLongDelay) {
    auto sampled = sampler();
    for (int i = 0; i < 10; ++i, now_ += 0.05) sampled.sample();
    EXPECT_EQ(queue_.size(), 1u);
    runMainThread(); // 0.5 s after the probe was sent
    now_ = 1001;
    sampled.sample();
    ASSERT_EQ(sampled.records().size(), 1u);
    EXPECT_NEAR(sampled.records()[0].maxMainQueueDelayMS, 500, 1e-6);

    // The next second no probe comes back.
    now_ = 1002;
    sampled.sample();
    EXPECT_EQ(sampled.records()[1].maxMainQueueDelayMS, 0);
    EXPECT_EQ(sampled.records()[1].p95MainQueueDelayMS, 0);
}

TEST_F(PerformanceSamplerTest, TakesThePercentileFromTheDelaysOfOneSecond) {
    for (const auto& [count, expected] : {std::pair{20, 20}, {100, 96}, {1, 1}}) {
        now_ = 1000;
        queue_.clear();
        auto sampled = sampler();
        for (int i = 1; i <= count; ++i) { // delays of 1 … count ms, the longest first
            const double sent = now_;
            sampled.sample();
            now_ += (count + 1 - i) * 0.001;
            runMainThread();
            now_ = sent;
        }
        now_ = 1001;
        sampled.sample();
        ASSERT_EQ(sampled.records().size(), 1u);
        EXPECT_NEAR(sampled.records()[0].p95MainQueueDelayMS, expected, 1e-6) << count;
        EXPECT_NEAR(sampled.records()[0].maxMainQueueDelayMS, count, 1e-6);
    }
}

TEST_F(PerformanceSamplerTest, WritesAllRecordsWithSortedKeysAndKeepsThePeak) {
    auto sampled = sampler();
    footprint_ = 3 * 1'048'576;
    sampled.sample();
    footprint_ = 1'048'576;
    now_ = 1001;
    sampled.sample();
    now_ = 1002.5;
    sampled.sample();
    EXPECT_THAT(output(),
                testing::MatchesRegex("\\[\\s*\\{\\s*\"elapsed\": 1.0,\\s*\"footprintMB\": 1.0,\\s*"
                                      "\"maxMainQueueDelayMS\": 0.0,\\s*\"p95MainQueueDelayMS\": 0.0,\\s*"
                                      "\"peakMB\": 3.0\\s*\\},\\s*\\{\\s*\"elapsed\": 2.5,(.|\\s)*\\]"));
}

TEST_F(PerformanceSamplerTest, AMissingFolderIsNoError) {
    PerformanceSampler sampled((folder_.path() / "missing" / "perf.json").string(),
                               {.system = files::FileSystem::real(),
                                .clock = {.now = {}, .uptimeSeconds = [this] { return now_; }},
                                .post = [](auto) {}});
    now_ = 1002;
    sampled.sample();
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "missing"));
    EXPECT_GT(sampled.records()[0].footprintMB, 1); // of this very process
}

TEST(PerformanceDiagnostics, OutlivedByAProbe) {
    std::mutex mutex;
    std::condition_variable arrived;
    std::function<void()> late;
    {
        const PerformanceDiagnostics diagnostics("/nowhere/perf.json",
                                                 {.system = files::FileSystem::real(),
                                                  .clock = time::Clock::system(),
                                                  .post = [&](std::function<void()> probe) {
                                                      const std::scoped_lock lock(mutex);
                                                      late = std::move(probe);
                                                      arrived.notify_one();
                                                  }});
        std::unique_lock lock(mutex);
        arrived.wait(lock, [&] { return static_cast<bool>(late); });
    }
    late(); // must not touch what is gone; the sanitizers watch
}

} // namespace lumisort::app
