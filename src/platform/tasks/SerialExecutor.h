#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace lumisort::tasks {

/// Runs jobs one at a time, in the order in which they were posted, on one thread of its own: the owner of
/// state that must not be touched twice at once, such as a document being written. The destructor returns
/// when every job has run, also those that these jobs posted; it must not run on the executor's own thread.
class SerialExecutor {
public:
    SerialExecutor();
    ~SerialExecutor();
    SerialExecutor(const SerialExecutor&) = delete;
    SerialExecutor& operator=(const SerialExecutor&) = delete;

    /// From any thread, also from within a job. The job must not throw: an exception ends the program.
    void post(std::function<void()> job);

private:
    void run() noexcept;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_; // guarded by mutex_
    bool closing_ = false;                   // guarded by mutex_
    std::thread thread_;                     // last: it uses all of the above
};

} // namespace lumisort::tasks
