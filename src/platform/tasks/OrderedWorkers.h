#pragma once

#include "platform/tasks/ParallelFor.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <stop_token>
#include <type_traits>
#include <utility>
#include <vector>

namespace lumisort::tasks {

/// Computes work(0) … work(count − 1) with parallelFor() on threadCount(width) threads, the caller's not
/// among them, and returns the results by index, whatever the order in which they were finished.
///
/// `work(std::size_t index, const std::stop_token& stop)` runs on the workers, several at once, and returns a
/// default-constructible value; indices are started in ascending order. `finished(std::size_t completed)`
/// runs on the calling thread alone, once per result, completed counting 1 … count. No index is started after
/// a stop.
///
/// Throws Cancelled when `stop` was requested before the last result was in. An exception of `work` or
/// `finished` stops the other workers (through the token that they were given), waits for them and is thrown
/// on; of several the first.
template <class Work, class Finished>
auto orderedWorkers(std::size_t count, int width, Work work, Finished finished, const std::stop_token& stop) {
    using Result = std::invoke_result_t<Work&, std::size_t, const std::stop_token&>;

    checkCancelled(stop);
    std::vector<Result> results(count);
    if (count == 0) return results;

    std::stop_source inner;
    const std::stop_callback passOn(stop, [&inner] { inner.request_stop(); });
    std::mutex mutex; // guards the next three
    std::condition_variable changed;
    std::deque<std::pair<std::size_t, Result>> arrived;
    std::exception_ptr failure;

    const auto fail = [&] {
        {
            const std::scoped_lock lock(mutex);
            if (!failure) failure = std::current_exception();
            changed.notify_one();
        }
        inner.request_stop();
    };
    const auto compute = [&](std::size_t index) {
        try {
            Result result = work(index, inner.get_token());
            const std::scoped_lock lock(mutex);
            arrived.emplace_back(index, std::move(result));
            changed.notify_one();
        } catch (...) {
            fail();
            throw;
        }
    };
    {
        TaskGroup workers;
        const struct StopBeforeWaiting {
            std::stop_source& source;
            ~StopBeforeWaiting() { source.request_stop(); }
        } stopBeforeWaiting{inner};
        workers.start([&] {
            try {
                parallelFor(count, width, inner.get_token(), compute);
            } catch (...) {
                fail();
            }
        });
        for (std::size_t completed = 0; completed < count;) {
            decltype(arrived) batch;
            {
                std::unique_lock lock(mutex);
                changed.wait(lock, [&] { return failure || !arrived.empty(); });
                if (failure) break;
                batch.swap(arrived);
            }
            for (auto& [index, result] : batch) {
                results[index] = std::move(result);
                finished(++completed);
                checkCancelled(stop);
            }
        }
    }
    if (failure) std::rethrow_exception(failure);
    return results;
}

} // namespace lumisort::tasks
