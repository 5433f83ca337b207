#pragma once

#include <compare>
#include <cstdint>

namespace lumisort::time {

/// A point in time: seconds since 2001-01-01 00:00:00 UTC, fractional, the form that documents store.
/// Nothing else in the program passes a bare double as a time. Around the year 2026 a step is 1.2e-7 s.
class Timestamp {
public:
    /// Seconds from the Unix epoch to this type's epoch.
    static constexpr std::int64_t unixOffsetSeconds = 978'307'200;

    constexpr Timestamp() = default;
    constexpr explicit Timestamp(double secondsSince2001) : seconds_(secondsSince2001) {}

    static constexpr Timestamp fromUnix(std::int64_t seconds, std::int64_t nanoseconds = 0) {
        return Timestamp(static_cast<double>(seconds - unixOffsetSeconds) +
                         static_cast<double>(nanoseconds) * 1e-9);
    }

    constexpr double secondsSince2001() const { return seconds_; }
    constexpr double secondsSinceUnixEpoch() const {
        return seconds_ + static_cast<double>(unixOffsetSeconds);
    }

    friend constexpr bool operator==(Timestamp, Timestamp) = default;
    friend constexpr auto operator<=>(Timestamp, Timestamp) = default;

private:
    double seconds_ = 0;
};

} // namespace lumisort::time
