#include "platform/tasks/SerialExecutor.h"

#include <gmock/gmock.h>

#include <memory>
#include <thread>
#include <vector>

namespace lumisort::tasks {

namespace {

TEST(SerialExecutor, RunsEachPostersJobsInOrderOneAtATime) {
    constexpr int posters = 4, jobs = 2000;
    std::vector<std::pair<int, int>> ran; // guarded by the executor alone: the thread sanitizer looks on
    {
        SerialExecutor executor;
        std::vector<std::jthread> threads;
        for (int poster = 0; poster < posters; ++poster)
            threads.emplace_back([&, poster] {
                for (int job = 0; job < jobs; ++job)
                    executor.post([&ran, poster, job] { ran.emplace_back(poster, job); });
            });
    } // the posters end first, then the executor drains
    EXPECT_EQ(ran.size(), posters * jobs);
    std::vector<int> next(posters, 0);
    for (const auto& [poster, job] : ran) EXPECT_EQ(job, next[static_cast<std::size_t>(poster)]++);
}

TEST(SerialExecutor, DrainsWithWhatItsJobsPost) {
    std::vector<int> ran;
    {
        SerialExecutor executor;
        executor.post([&] {
            executor.post([&] {
                ran.push_back(2);
                executor.post([&] { ran.push_back(3); });
            });
            ran.push_back(1);
        });
    }
    EXPECT_THAT(ran, testing::ElementsAre(1, 2, 3));
}

TEST(SerialExecutor, ReleasesWhatAJobHoldsBeforeTheNextOne) {
    const auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    long users = -1;
    {
        SerialExecutor executor;
        executor.post([copy = held] { ++*copy; });
        executor.post([&] { users = watched.use_count(); });
    }
    EXPECT_EQ(users, 1);
    EXPECT_EQ(*held, 1);
}

} // namespace

} // namespace lumisort::tasks
