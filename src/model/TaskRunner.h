#pragma once

#include <QFuture>
#include <QObject>
#include <QPointer>
#include <QPromise>
#include <exception>
#include <expected>
#include <functional>
#include <memory>
#include <type_traits>

namespace lumisort::model {

/// What a job gave back or threw.
template <class Result>
using Outcome = std::expected<Result, std::exception_ptr>;

/// Has a function run on another thread, later.
using Background = std::function<void(std::function<void()>)>;

/// Runs jobs on other threads and brings what they give back to the main thread. A future that it returns is
/// finished on the main thread, so whoever waits for one reads on there. Belongs to the main thread.
class TaskRunner {
public:
    /// The jobs run on Qt's thread pool unless another way is given.
    explicit TaskRunner(Background background = {});

    /// Runs `job()` on another thread, then `then(Outcome)` on the main thread, unless `context` is gone by
    /// then. Neither may capture anything that can go away meanwhile; `then` may use `context`. Finished
    /// after `then`.
    template <class Job, class Then>
    QFuture<void> start(QObject* context, Job job, Then then) const {
        return start(background_, context, std::move(job), std::move(then));
    }

    /// The same on a way of one's own, such as a serial executor.
    template <class Job, class Then>
    QFuture<void> start(const Background& background, QObject* context, Job job, Then then) const {
        auto done = std::make_shared<QPromise<void>>();
        done->start();
        auto arrive = [done, context = QPointer(context), then = std::move(then)](auto outcome) mutable {
            if (context) then(std::move(outcome));
            done->finish();
        };
        background([post = mainThread(), job = std::move(job), arrive = std::move(arrive)]() mutable {
            using Result = std::invoke_result_t<Job>;
            auto outcome = std::make_shared<Outcome<Result>>(attempt(job));
            post([outcome, arrive = std::move(arrive)]() mutable { arrive(std::move(*outcome)); });
        });
        return done->future();
    }

    /// A function that any thread may call, at any time, to have another run on the main thread.
    std::function<void(std::function<void()>)> mainThread() const;

private:
    template <class Job>
    static auto attempt(Job& job) -> Outcome<std::invoke_result_t<Job>> {
        try {
            if constexpr (std::is_void_v<std::invoke_result_t<Job>>) {
                job();
                return {};
            } else {
                return job();
            }
        } catch (...) {
            return std::unexpected(std::current_exception());
        }
    }

    Background background_;
    std::shared_ptr<QObject> mailbox_; ///< lives on the main thread for as long as a job may post to it
};

/// Calls `next` on the main thread once `task` is finished, at once if it is; not at all when `context` goes
/// first.
template <class Next>
void whenFinished(const QFuture<void>& task, QObject* context, Next next) {
    if (task.isFinished())
        next();
    else
        QFuture<void>(task).then(context, std::move(next));
}

/// The message of a failure.
std::string describe(const std::exception_ptr& failure);

} // namespace lumisort::model
