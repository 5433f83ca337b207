#include "platform/tasks/OrderedWorkers.h"

#include "platform/tasks/ProgressThrottle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <numeric>
#include <stdexcept>

namespace lumisort::tasks {
namespace {

using testing::ElementsAre;

constexpr auto ignoreProgress = [](std::size_t) {};

/// Waits, as a worker in a long decode does, until it is told to stop.
void waitForStop(const std::stop_token& stop) {
    while (!stop.stop_requested()) std::this_thread::yield();
}

TEST(OrderedWorkers, ReturnsResultsByIndexWhateverTheOrderOfFinishing) {
    for (const int width : {0, 1, 3, 10}) {
        std::atomic<int> running = 0;
        std::atomic<int> most = 0;
        const auto caller = std::this_thread::get_id();
        std::vector<std::size_t> progress;
        const auto results = orderedWorkers(
            200, width,
            [&](std::size_t index, const std::stop_token&) {
                const int now = ++running;
                for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);) {
                }
                for (std::size_t spin = 0; spin < (index * 7919) % 13; ++spin) std::this_thread::yield();
                --running;
                return index * index;
            },
            [&](std::size_t completed) {
                EXPECT_EQ(std::this_thread::get_id(), caller);
                progress.push_back(completed);
            },
            {});
        ASSERT_EQ(results.size(), 200U);
        for (std::size_t index = 0; index < results.size(); ++index) EXPECT_EQ(results[index], index * index);
        std::vector<std::size_t> expected(200);
        std::iota(expected.begin(), expected.end(), 1U);
        EXPECT_EQ(progress, expected);
        EXPECT_LE(static_cast<std::size_t>(most), threadCount(width));
    }
}

TEST(OrderedWorkers, RunsAsManyAtOnceAsAsked) {
    std::latch together(7); // passes only when seven workers are inside at the same time
    const auto results = orderedWorkers(7, 7,
                                        [&](std::size_t, const std::stop_token&) {
                                            together.arrive_and_wait();
                                            return 1;
                                        },
                                        ignoreProgress, {});
    EXPECT_EQ(results.size(), 7U);
}

TEST(OrderedWorkers, NoItemsNeedNoWorkers) {
    const auto results = orderedWorkers(
        0, 4, [](std::size_t, const std::stop_token&) { return 1; },
        [](std::size_t) { FAIL() << "nothing was finished"; }, {});
    EXPECT_TRUE(results.empty());
}

TEST(OrderedWorkers, AFailureStopsTheOthersAndIsThrownOn) {
    std::atomic<int> started = 0;
    std::atomic<int> ended = 0;
    const auto run = [&] {
        orderedWorkers(1000, 4,
                       [&](std::size_t index, const std::stop_token& stop) {
                           ++started;
                           if (index == 2) {
                               ++ended;
                               throw std::runtime_error("item 2");
                           }
                           waitForStop(stop);
                           ++ended;
                           return 0;
                       },
                       ignoreProgress, {});
    };
    EXPECT_THROW(run(), std::runtime_error);
    EXPECT_EQ(started, ended);
    EXPECT_LE(started, 4);
}

TEST(OrderedWorkers, AFailureOfTheCallerStopsTheWorkers) {
    const auto run = [] {
        orderedWorkers(
            8, 2,
            [](std::size_t index, const std::stop_token& stop) {
                if (index > 0) waitForStop(stop);
                return 0;
            },
            [](std::size_t) { throw std::runtime_error("progress"); }, {});
    };
    EXPECT_THROW(run(), std::runtime_error);
}

TEST(OrderedWorkers, AStopReachesTheWorkersAndIsThrown) {
    std::stop_source source;
    std::atomic<int> started = 0;
    const auto run = [&] {
        orderedWorkers(
            1000, 4,
            [&](std::size_t, const std::stop_token& stop) {
                if (++started == 4) source.request_stop();
                waitForStop(stop);
                return 0;
            },
            ignoreProgress, source.get_token());
    };
    EXPECT_THROW(run(), Cancelled);
    EXPECT_EQ(started, 4);

    EXPECT_THROW(run(), Cancelled); // a stop that came before the run starts nothing
    EXPECT_EQ(started, 4);
}

TEST(OrderedWorkers, AStopFromTheProgressOfTheLastResultIsThrown) {
    std::stop_source source;
    const auto run = [&] {
        orderedWorkers(
            1, 1, [](std::size_t, const std::stop_token&) { return 0; },
            [&](std::size_t) { source.request_stop(); }, source.get_token());
    };
    EXPECT_THROW(run(), Cancelled);
}

TEST(ProgressThrottle, ReportsTheFirstTheLastAndTenASecond) {
    double now = 0.0;
    ProgressThrottle throttle({.now = {}, .uptimeSeconds = [&] { return now; }});
    std::vector<std::size_t> reported;
    for (std::size_t completed = 1; completed <= 20; ++completed, now += 0.03)
        if (throttle.due(completed, 20)) reported.push_back(completed);
    EXPECT_THAT(reported, ElementsAre(1, 5, 9, 13, 17, 20));
}

} // namespace
} // namespace lumisort::tasks
