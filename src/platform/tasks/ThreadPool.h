#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace lumisort::tasks {

/// The thread pool of the process. A job starts at once, on an idle thread or on a new one, so jobs may wait
/// for one another; whoever starts jobs bounds how many. Threads are kept until the program ends.
class ThreadPool {
public:
    static ThreadPool& shared();

    /// Any thread. The job must not throw. Throws std::system_error where no thread can be started; the job
    /// is then dropped.
    void start(std::function<void()> job);

private:
    void run() noexcept;

    std::mutex mutex_; // guards all below
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_;
    std::size_t idle_ = 0; ///< threads that wait for a job or begin to
};

/// Jobs of the pool that are waited for together.
class TaskGroup {
public:
    TaskGroup() = default;
    /// Returns when all jobs have.
    ~TaskGroup();
    TaskGroup(const TaskGroup&) = delete;
    TaskGroup& operator=(const TaskGroup&) = delete;

    /// As ThreadPool::start.
    void start(std::function<void()> job);

private:
    void end();

    std::mutex mutex_; // guards all below
    std::condition_variable ended_;
    std::size_t running_ = 0;
};

} // namespace lumisort::tasks
