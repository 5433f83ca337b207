#pragma once

#include <exception>
#include <stop_token>

namespace lumisort::tasks {

/// A task was asked to stop and did. Never an error that anyone is shown.
class Cancelled : public std::exception {
public:
    const char* what() const noexcept override { return "cancelled"; }
};

/// Throws Cancelled when a stop was requested.
inline void checkCancelled(const std::stop_token& stop) {
    if (stop.stop_requested()) throw Cancelled();
}

} // namespace lumisort::tasks
