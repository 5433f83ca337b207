#include "model/TaskRunner.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QCoreApplication>
#include <thread>

namespace lumisort::model {
namespace {

QCoro::Task<int> answer(const TaskRunner& runner) {
    auto job = [] { return 42; };
    auto outcome = co_await runner.run(std::move(job));
    co_return *outcome;
}

// The application deletes what it could not deliver under the lock of the list of events. Whoever waited for
// the answer must not send an event then: the program would never end.
TEST(TaskRunner, AnAnswerThatComesAfterTheLastTurnOfTheLoopDoesNotHoldUpTheEnd) {
    const auto endTheApplication = [] {
        alarm(20);
        auto runner = std::make_unique<TaskRunner>(
            [](std::function<void()> job) { std::jthread worker(std::move(job)); });
        const auto future = futureOf(answer(*runner));
        QFutureWatcher<int> watcher;
        watcher.setFuture(future);
        runner.reset();
        QCoreApplication::instance()->~QCoreApplication();
        _exit(0);
    };
    EXPECT_EXIT(endTheApplication(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace lumisort::model
