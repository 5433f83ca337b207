#pragma once

#include "platform/images/Bitmap.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace lumisort::similarity {

/// Pixels along each side of the canvas on which a photo is looked at.
inline constexpr int canvasSide = 32;

/// A photo drawn over white and stretched to a square: rows from the top, R, G, B bytes in sRGB.
struct FingerprintCanvas {
    std::array<std::uint8_t, std::size_t{3} * canvasSide * canvasSide> rgb{};

    std::uint8_t value(int y, int x, int channel) const { return rgb[3 * (y * canvasSide + x) + channel]; }

    friend bool operator==(const FingerprintCanvas&, const FingerprintCanvas&) = default;
};

/// Draws `photo` (at least one pixel each way) over white, stretched to the whole canvas, its aspect ratio
/// given up. The filter is Lanczos' with three lobes, as wide as the reduction demands, and symmetric, so
/// that a turned or mirrored photo gives the turned or mirrored canvas up to rounding.
FingerprintCanvas drawCanvas(const images::Bitmap& photo);

} // namespace lumisort::similarity
