#pragma once

#include <stop_token>

namespace lumisort::tasks {

/// Thrown by a task that was asked to stop and did. It is no std::exception: what handles errors, and reports
/// or counts them, lets it pass.
struct Cancelled {};

/// Throws Cancelled when a stop was requested.
inline void checkCancelled(const std::stop_token& stop) {
    if (stop.stop_requested()) throw Cancelled();
}

} // namespace lumisort::tasks
