#pragma once

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace lumisort::film {

/// Calls work(0) to work(count - 1) once each, on `workers` threads with the caller's among them (0: as
/// many as the processor runs at once), in any order. Returns when all have returned. Looks at the token
/// before each call and throws tasks::Cancelled; an exception from `work` stops the rest and passes on.
template <class Work>
void forEachSlice(int count, int workers, const std::stop_token& stop, const Work& work) {
    if (workers <= 0) workers = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    std::atomic<int> next = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    const auto run = [&] {
        try {
            for (int slice = next++; slice < count; slice = next++) {
                tasks::checkCancelled(stop);
                work(slice);
            }
        } catch (...) {
            next = count;
            const std::lock_guard lock(mutex);
            if (!failure) failure = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> others;
        for (int i = 1; i < std::min(workers, count); ++i) others.emplace_back(run);
        run();
    }
    if (failure) std::rethrow_exception(failure);
}

} // namespace lumisort::film
