#include "platform/text/ByteCount.h"

#include <array>

namespace lumisort::text {

std::string byteCount(std::int64_t bytes) {
    if (bytes < 1000) return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    constexpr std::array units{" kB", " MB", " GB", " TB", " PB", " EB"};
    std::size_t unit = 0;
    // Tenths of the unit, rounded to the nearest; 999.95 kB is 1.0 MB already.
    std::int64_t tenths = (bytes + 50) / 100;
    while (tenths >= 10'000) {
        tenths = (tenths + 500) / 1000;
        ++unit;
    }
    return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + units.at(unit);
}

} // namespace lumisort::text
