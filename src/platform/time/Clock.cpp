#include "platform/time/Clock.h"

#include <ctime>

namespace lumisort::time {

Clock Clock::system() {
    return {
        .now =
            [] {
                timespec now{};
                clock_gettime(CLOCK_REALTIME, &now);
                return Timestamp::fromUnix(now.tv_sec, now.tv_nsec);
            },
        .uptimeSeconds =
            [] {
                timespec now{};
                clock_gettime(CLOCK_MONOTONIC, &now);
                return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
            },
    };
}

} // namespace lumisort::time
