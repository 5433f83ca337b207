#pragma once

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace lumisort::tasks {

/// Most workers of one run. Each holds a decoded photo, so this bounds memory as well as threads.
inline constexpr int mostWorkers = 4;

/// How many workers a run gets that asks for `concurrency`: that number, within 1…mostWorkers.
constexpr int workerWidth(int concurrency) {
    return std::clamp(concurrency, 1, mostWorkers);
}

/// Computes work(0) … work(count − 1) on workerWidth(concurrency) threads of its own and returns the results
/// by index, whatever the order in which they were finished.
///
/// `work(std::size_t index, const std::stop_token& stop)` runs on the workers, several at once, and returns a
/// default-constructible value; indices are started in ascending order. `finished(std::size_t completed)`
/// runs on the calling thread alone, once per result, completed counting 1 … count. No index is started after
/// a stop.
///
/// Throws Cancelled when `stop` was requested before the last result was in. An exception of `work` or
/// `finished` stops the other workers (through the token that they were given), waits for them and is thrown
/// on; of several the first. No thread is left behind in any case.
template <class Work, class Finished>
auto orderedWorkers(std::size_t count, int concurrency, Work work, Finished finished,
                    const std::stop_token& stop) {
    using Result = std::invoke_result_t<Work&, std::size_t, const std::stop_token&>;

    checkCancelled(stop);
    std::stop_source inner;
    const std::stop_callback passOn(stop, [&inner] { inner.request_stop(); });

    std::mutex mutex; // guards the next four
    std::condition_variable changed;
    std::deque<std::pair<std::size_t, Result>> arrived;
    std::size_t next = 0;
    std::exception_ptr failure;

    const auto takeIndex = [&]() -> std::optional<std::size_t> {
        const std::scoped_lock lock(mutex);
        if (next == count) return std::nullopt; // before the stop, which also ends a run that is complete
        checkCancelled(inner.get_token());
        return next++;
    };
    const auto serve = [&] {
        try {
            while (const auto index = takeIndex()) {
                Result result = work(*index, inner.get_token());
                const std::scoped_lock lock(mutex);
                arrived.emplace_back(*index, std::move(result));
                changed.notify_one();
            }
        } catch (...) {
            const std::scoped_lock lock(mutex);
            if (!failure) failure = std::current_exception();
            inner.request_stop();
            changed.notify_one();
        }
    };

    std::vector<Result> results(count);
    {
        std::vector<std::jthread> workers;
        const struct StopBeforeJoining {
            std::stop_source& source;
            ~StopBeforeJoining() { source.request_stop(); }
        } stopBeforeJoining{inner};
        const auto width = std::min(count, static_cast<std::size_t>(workerWidth(concurrency)));
        for (std::size_t worker = 0; worker < width; ++worker) workers.emplace_back(serve);

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
