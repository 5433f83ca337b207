#pragma once

#include "platform/tasks/ParallelFor.h"

#include <algorithm>
#include <cstddef>
#include <stop_token>

namespace lumisort::images {

/// Calls work(top, bottom) for strips of `height` of the rows 0 … rows − 1, on all processors, in any order.
/// Throws tasks::Cancelled when a stop was requested before the last strip was done; what `work` throws comes
/// out.
template <class Work>
void forEachStrip(int rows, int height, Work work, const std::stop_token& stop) {
    const auto count = static_cast<std::size_t>((rows + height - 1) / height);
    tasks::parallelFor(count, 0, stop, [&](std::size_t index) {
        const int top = static_cast<int>(index) * height;
        work(top, std::min(top + height, rows));
    });
}

} // namespace lumisort::images
