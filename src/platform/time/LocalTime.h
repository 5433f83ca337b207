#pragma once

#include "platform/time/Timestamp.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumisort::time {

/// Wall-clock fields in the process's current time zone. month 1…12, day 1…31, second 0…60.
struct LocalTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

/// The fields of `instant` in the current time zone. Instants outside the years 1 to 9999 are moved to the
/// nearer end; what is no number counts as 2001-01-01 UTC. So do the stamps below. Thread-safe.
LocalTime localTime(Timestamp instant);

/// The instant at which the current time zone's clocks show `text`, an EXIF date in the form
/// "yyyy:MM:dd HH:mm:ss" (EXIF 2.32, 4.6.5, DateTimeOriginal). None when the text has another form or
/// names no real calendar date. Trailing NULs and white space are ignored. A wall-clock time that a
/// daylight-saving change skips is read with the offset before the change, one that it repeats is the first
/// of the two. Thread-safe.
std::optional<Timestamp> parseExifDate(std::string_view text);

/// "2026-11-22-184500": the form of run-folder names. Thread-safe.
std::string folderStamp(Timestamp instant);

/// "20261122T184500Z": UTC, for the names of files set aside. Thread-safe.
std::string utcStamp(Timestamp instant);

} // namespace lumisort::time
