#include "platform/tasks/ParallelFor.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <barrier>
#include <set>
#include <stdexcept>

namespace lumisort::tasks {
namespace {

TEST(ParallelFor, CallsEveryIndexOnceAndEndsWithinOneCallOfAStopOrAFailure) {
    for (const int width : {0, 1, 2, 5}) {
        std::array<std::atomic<int>, 50> calls{};
        parallelFor(calls.size(), width, {}, [&](std::size_t index) { ++calls[index]; });
        for (const auto& count : calls) EXPECT_EQ(count, 1);

        std::stop_source stop;
        std::atomic<int> done = 0;
        const auto stopAtThird = [&](std::size_t) {
            if (++done == 3) stop.request_stop();
        };
        EXPECT_THROW(parallelFor(1000, width, stop.get_token(), stopAtThird), Cancelled);
        EXPECT_LE(static_cast<std::size_t>(done), 3 + threadCount(width) - 1);
        EXPECT_THROW(parallelFor(1000, width, stop.get_token(), stopAtThird), Cancelled);

        const auto fail = [&](std::size_t index) {
            if (index == 4) throw std::runtime_error("broken");
        };
        EXPECT_THROW(parallelFor(1000, width, {}, fail), std::runtime_error);
    }
    parallelFor(0, 4, {}, [](std::size_t) { FAIL() << "there is nothing to do"; });
}

TEST(ParallelFor, KeepsItsThreads) {
    std::mutex mutex;
    std::set<pid_t> threads; // as the system numbers them, which gives no number twice so soon
    for (int run = 0; run < 100; ++run)
        parallelFor(3, 3, {}, [&](std::size_t) {
            const std::scoped_lock lock(mutex);
            threads.insert(gettid());
        });
    EXPECT_LE(threads.size(), 20U); // those of other tests in this process among them; 200 if none were kept
}

TEST(ParallelFor, RunsInsideOfAnother) {
    std::atomic<int> calls = 0;
    parallelFor(8, 4, {}, [&](std::size_t) {
        std::barrier together(2); // both inner calls are on their way at once, or neither returns
        parallelFor(2, 2, {}, [&](std::size_t) {
            together.arrive_and_wait();
            ++calls;
        });
    });
    EXPECT_EQ(calls, 16);
}

} // namespace
} // namespace lumisort::tasks
