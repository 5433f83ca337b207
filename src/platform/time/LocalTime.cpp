#include "platform/time/LocalTime.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>

namespace lumisort::time {

namespace {

constexpr std::int64_t earliest = -62'135'596'800; // 0001-01-01 00:00:00 UTC
constexpr std::int64_t latest = 253'402'300'799;   // 9999-12-31 23:59:59 UTC
constexpr std::int64_t day = 86'400;

/// Documents may hold any number as a time; time_t and the year fields of `tm` may not.
std::time_t wholeSeconds(Timestamp instant) {
    const double seconds = instant.secondsSinceUnixEpoch();
    if (!std::isfinite(seconds)) return Timestamp::unixOffsetSeconds;
    return static_cast<std::time_t>(
        std::clamp(std::floor(seconds), static_cast<double>(earliest), static_cast<double>(latest)));
}

std::tm zoned(std::time_t seconds) {
    std::tm fields{};
    localtime_r(&seconds, &fields);
    return fields;
}

std::string formatted(const char* pattern, const std::tm& fields) {
    std::array<char, 64> text{};
    const auto length = std::strftime(text.data(), text.size(), pattern, &fields);
    return {text.data(), length};
}

std::optional<int> digits(std::string_view text) {
    int value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return value;
}

/// The fields as if they were UTC, in seconds since the Unix epoch.
std::optional<std::int64_t> parsedFields(std::string_view text) {
    static constexpr std::string_view shape = "dddd:dd:dd dd:dd:dd";
    if (text.size() != shape.size()) return std::nullopt;
    for (std::size_t i = 0; i < shape.size(); ++i)
        if (shape[i] != 'd' && text[i] != shape[i]) return std::nullopt;
    const auto year = digits(text.substr(0, 4));
    const auto month = digits(text.substr(5, 2));
    const auto dayOfMonth = digits(text.substr(8, 2));
    const auto hour = digits(text.substr(11, 2));
    const auto minute = digits(text.substr(14, 2));
    const auto second = digits(text.substr(17, 2));
    if (!year || !month || !dayOfMonth || !hour || !minute || !second) return std::nullopt;
    if (*year == 0 || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
    const std::chrono::year_month_day date(std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*dayOfMonth)));
    if (!date.ok()) return std::nullopt;
    const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
    return days * day + *hour * 3600 + *minute * 60 + *second;
}

} // namespace

LocalTime localTime(Timestamp instant) {
    const auto fields = zoned(wholeSeconds(instant));
    return {.year = fields.tm_year + 1900,
            .month = fields.tm_mon + 1,
            .day = fields.tm_mday,
            .hour = fields.tm_hour,
            .minute = fields.tm_min,
            .second = fields.tm_sec};
}

std::optional<Timestamp> parseExifDate(std::string_view text) {
    while (!text.empty() && std::string_view("\0 \t\r\n", 5).find(text.back()) != std::string_view::npos)
        text.remove_suffix(1);
    const auto wall = parsedFields(text);
    if (!wall) return std::nullopt;
    // mktime leaves open what it makes of wall-clock times that a change of the clocks skips or repeats. The
    // offsets a day before and a day after bracket the change: the one that leads back to the same offset
    // holds, the earlier one first.
    const std::int64_t before = *wall - zoned(*wall - day).tm_gmtoff;
    const std::int64_t after = *wall - zoned(*wall + day).tm_gmtoff;
    for (const auto candidate : {before, after})
        if (candidate + zoned(candidate).tm_gmtoff == *wall) return Timestamp::fromUnix(candidate);
    return Timestamp::fromUnix(before);
}

std::string folderStamp(Timestamp instant) {
    return formatted("%Y-%m-%d-%H%M%S", zoned(wholeSeconds(instant)));
}

std::string utcStamp(Timestamp instant) {
    const auto seconds = wholeSeconds(instant);
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    return formatted("%Y%m%dT%H%M%SZ", fields);
}

} // namespace lumisort::time
