#pragma once

#include "platform/tasks/Cancellation.h"

#include <qcoro/qcorotask.h>

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QPromise>
#include <coroutine>
#include <exception>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace lumisort::model {

/// What a job returned, or the exception that it threw.
template <class Result>
using Outcome = std::expected<Result, std::exception_ptr>;

/// Runs a function on another thread, later.
using Background = std::function<void(std::function<void()>)>;

/// Lets coroutines of the main thread wait for jobs on other threads and for futures. A coroutine that waits
/// while its runner is destroyed ends with tasks::Cancelled, thrown on the main thread: it unwinds without
/// touching the objects that own the runner, and so does every coroutine that waits for it. Belongs to the
/// main thread.
class TaskRunner {
public:
    /// The jobs run on a thread pool of the runner's own unless another way is given.
    explicit TaskRunner(Background background = {});

    /// `co_await runner.run(job)` calls `job()` on another thread and resumes on the main thread with its
    /// Outcome. The job must not capture anything that can be destroyed meanwhile.
    template <class Job>
    auto run(Job job) const {
        return JobAwaiter<Job>(background_, *this, std::move(job));
    }
    /// The same in another way, such as on a serial executor.
    template <class Job>
    auto run(Background background, Job job) const {
        return JobAwaiter<Job>(std::move(background), *this, std::move(job));
    }

    /// `co_await runner.finished(future)` resumes on the main thread once the future is finished or
    /// cancelled. Any number of coroutines may wait for one future.
    template <class Result>
    auto finished(const QFuture<Result>& future) const {
        return FutureAwaiter(QFuture<void>(future), alive_);
    }

    /// Returns a function that any thread may call at any time to run another on the main thread.
    std::function<void(std::function<void()>)> mainThread() const;

private:
    class Mailbox;
    using Alive = std::weak_ptr<const std::monostate>;

    /// Resumes a coroutine once, at the latest when the last owner of this is destroyed: a job that is
    /// dropped without having run must not leave its coroutine behind.
    struct Resumption {
        std::coroutine_handle<> caller;
        explicit Resumption(std::coroutine_handle<> waiting) : caller(waiting) {}
        Resumption(const Resumption&) = delete;
        Resumption& operator=(const Resumption&) = delete;
        ~Resumption() { resume(); }
        void resume() {
            if (const auto waiting = std::exchange(caller, {})) waiting.resume();
        }
    };

    template <class Job>
    class JobAwaiter {
    public:
        using Result = std::invoke_result_t<Job&>;

        JobAwaiter(Background background, const TaskRunner& runner, Job job)
            : background_(std::move(background)), post_(runner.mainThread()), alive_(runner.alive_),
              job_(std::move(job)) {}
        JobAwaiter(JobAwaiter&&) = default; // into the frame of the coroutine, before the job begins

        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> caller) {
            // The awaiter lives in the frame of the coroutine until that is resumed.
            auto resumption = std::make_shared<Resumption>(caller);
            background_([this, resumption = std::move(resumption), job = std::move(job_)]() mutable {
                outcome_.emplace(attempt(job));
                const auto post = std::move(post_); // the frame can be gone before `post` returns
                post([resumption] { resumption->resume(); });
            });
        }
        Outcome<Result> await_resume() {
            if (alive_.expired() || !outcome_) throw tasks::Cancelled();
            return *std::move(outcome_);
        }

    private:
        static Outcome<Result> attempt(Job& job) {
            try {
                if constexpr (std::is_void_v<Result>) {
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
        std::function<void(std::function<void()>)> post_;
        Alive alive_;
        Job job_;
        std::optional<Outcome<Result>> outcome_;
    };

    class FutureAwaiter {
    public:
        FutureAwaiter(QFuture<void> future, Alive alive)
            : future_(std::move(future)), alive_(std::move(alive)) {}

        bool await_ready() const noexcept { return future_.isFinished(); }
        void await_suspend(std::coroutine_handle<> caller) {
            auto* watcher = new QFutureWatcher<void>; // deletes itself
            QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, caller] {
                watcher->deleteLater();
                caller.resume();
            });
            watcher->setFuture(future_);
        }
        void await_resume() const {
            if (alive_.expired()) throw tasks::Cancelled();
        }

    private:
        QFuture<void> future_;
        Alive alive_;
    };

    Background background_;
    std::shared_ptr<Mailbox> mailbox_; ///< lives on the main thread for as long as a job may post to it
    std::shared_ptr<const std::monostate> alive_ = std::make_shared<const std::monostate>();
};

/// The future of what a coroutine returns. A coroutine that ends with an exception cancels it.
template <class Result>
QFuture<Result> futureOf(QCoro::Task<Result> task) {
    QPromise<Result> promise;
    promise.start();
    auto future = promise.future();
    // The parameters live in the frame of the coroutine until it ends.
    [](QCoro::Task<Result> work, QPromise<Result> answer) -> QCoro::Task<> {
        if constexpr (std::is_void_v<Result>) {
            co_await work;
        } else {
            auto result = co_await work;
            answer.addResult(std::move(result));
        }
        answer.finish();
    }(std::move(task), std::move(promise));
    return future;
}

/// Calls `next` on the main thread once `task` is finished or cancelled, at once if it is; not at all when
/// `context` is destroyed first. Any number of callers may wait for one future.
template <class Result, class Next>
void whenFinished(const QFuture<Result>& task, QObject* context, Next next) {
    if (task.isFinished()) return next();
    auto* watcher = new QFutureWatcher<void>(context); // deleted with the context or below
    QObject::connect(watcher, &QFutureWatcherBase::finished, context,
                     [watcher, next = std::move(next)]() mutable {
                         watcher->deleteLater();
                         next();
                     });
    watcher->setFuture(QFuture<void>(task));
}

/// The message of a failure.
std::string describe(const std::exception_ptr& failure);

} // namespace lumisort::model
