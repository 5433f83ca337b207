#pragma once

#include "platform/time/Clock.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace lumisort::tasks {

/// Least time between two progress reports of a long run.
inline constexpr double progressIntervalSeconds = 0.1;

/// Decides which steps of a long run are worth a report: the first, the last, and of those between at most
/// ten a second. Used by one thread.
class ProgressThrottle {
public:
    explicit ProgressThrottle(time::Clock clock) : clock_(std::move(clock)) {}

    /// Whether to report that `completed` of `total` are done; true counts as reported.
    bool due(std::size_t completed, std::size_t total) {
        const double now = clock_.uptimeSeconds();
        if (completed != total && last_ && now - *last_ < progressIntervalSeconds) return false;
        last_ = now;
        return true;
    }

private:
    time::Clock clock_;
    std::optional<double> last_;
};

} // namespace lumisort::tasks
