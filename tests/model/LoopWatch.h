#pragma once

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <mutex>

namespace lumisort::model {

/// A timer on the main thread that notes the longest time for which something kept the event loop from
/// turning: with work of its own, or waiting for a file, a lock or another thread. Time for which the thread
/// could have gone on and other programs had the processors does not count, so that a busy machine fails no
/// test.
class LoopWatch {
public:
#ifdef __SANITIZE_THREAD__
    /// The sanitizer does not see into Qt's event queue, takes every value that comes out of it for a race
    /// and needs seconds to find that those are to be passed over.
    static constexpr std::chrono::milliseconds bearable{60'000};
#else
    /// What people take for a window that hangs begins at about this.
    static constexpr std::chrono::milliseconds bearable{250};
#endif
    /// After this a job that is held up goes on.
    static constexpr std::chrono::milliseconds holdUp{1000};

    LoopWatch() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            note();
            const std::scoped_lock lock(mutex_);
            ++turns_;
            turned_.notify_all();
        });
        timer_.start(std::chrono::milliseconds(1));
    }

    std::chrono::milliseconds longest() {
        note();
        return std::chrono::duration_cast<std::chrono::milliseconds>(longest_);
    }

    /// Holds up the thread that calls it, which is not the main thread, until the event loop has turned a few
    /// times. Where the main thread waits for that thread the loop cannot, and after a while, which `longest`
    /// then tells, it goes on all the same.
    void holdUpJob() {
        std::unique_lock lock(mutex_);
        turned_.wait_for(lock, holdUp, [this, until = turns_ + 3] { return turns_ >= until; });
    }

private:
    void note() {
        const auto time = now();
        longest_ = std::max(longest_, time - last_);
        last_ = time;
    }

    /// The time, less what this thread has spent ready to run and without a processor. That is the second
    /// number, in nanoseconds, of the kernel's scheduler statistics
    /// (Documentation/scheduler/sched-stats.rst).
    static std::chrono::nanoseconds now() {
        std::int64_t running = 0, ready = 0;
        std::ifstream("/proc/thread-self/schedstat") >> running >> ready;
        return std::chrono::steady_clock::now().time_since_epoch() - std::chrono::nanoseconds(ready);
    }

    QTimer timer_;
    std::chrono::nanoseconds last_ = now(), longest_{0};
    std::mutex mutex_;
    std::condition_variable turned_;
    int turns_ = 0; // guarded by mutex_
};

} // namespace lumisort::model
