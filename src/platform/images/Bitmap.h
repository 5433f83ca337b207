#pragma once

#include <cstdint>
#include <vector>

namespace lumisort::images {

/// An owning 8-bit RGBA image, rows from the top without padding, sRGB, alpha straight.
struct Bitmap {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba; ///< 4 · width · height bytes
};

} // namespace lumisort::images
