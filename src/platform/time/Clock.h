#pragma once

#include "platform/time/Timestamp.h"

#include <functional>

namespace lumisort::time {

/// Where the program takes the time from, injected so that tests set it and never sleep.
/// Both functions may be called from any thread.
struct Clock {
    /// Wall-clock time.
    std::function<Timestamp()> now;
    /// Seconds on a clock that never goes back; its zero has no meaning.
    std::function<double()> uptimeSeconds;

    static Clock system();
};

} // namespace lumisort::time
