#pragma once

#include "platform/tasks/Cancellation.h"
#include "platform/tasks/ThreadPool.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <stop_token>
#include <thread>

namespace lumisort::tasks {

/// How many threads a parallel run uses whose caller asks for `width`: that number, and for 0 or less as many
/// as the processor runs at once.
inline std::size_t threadCount(int width) {
    return width > 0 ? static_cast<std::size_t>(width) : std::max(1U, std::thread::hardware_concurrency());
}

/// Calls work(0) … work(count − 1) once each, started in ascending order, on threadCount(width) threads, the
/// caller's among them, and returns when all have returned. Calls may be nested.
///
/// Looks at `stop` before each call and throws Cancelled. After an exception of `work` no call is started; it
/// is thrown on once those under way have returned, of several the first.
template <class Work>
void parallelFor(std::size_t count, int width, const std::stop_token& stop, const Work& work) {
    std::atomic<std::size_t> next = 0;
    std::mutex mutex;
    std::exception_ptr failure; // guarded by mutex
    const auto run = [&] {
        try {
            for (std::size_t index = next++; index < count; index = next++) {
                checkCancelled(stop);
                work(index);
            }
        } catch (...) {
            next = count;
            const std::scoped_lock lock(mutex);
            if (!failure) failure = std::current_exception();
        }
    };
    {
        TaskGroup others;
        for (std::size_t thread = 1; thread < std::min(count, threadCount(width)); ++thread)
            others.start(run);
        run();
    }
    if (failure) std::rethrow_exception(failure);
}

} // namespace lumisort::tasks
