#include "platform/text/ByteCount.h"

#include <array>

namespace lumisort::text {

std::string byteCount(std::int64_t bytes) {
    if (bytes < 1000) return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    constexpr std::array units{" kB", " MB", " GB", " TB", " PB", " EB"};
    std::size_t unit = 0;
    // Rounded to the nearest tenth of the unit, once; 999.95 kB is 1.0 MB already.
    const auto in = [bytes](std::int64_t tenth) { return bytes / tenth + (bytes % tenth >= tenth / 2); };
    std::int64_t tenth = 100;
    for (; in(tenth) >= 10'000; tenth *= 1000) ++unit;
    const auto tenths = in(tenth);
    return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + units.at(unit);
}

} // namespace lumisort::text
