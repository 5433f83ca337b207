#pragma once

#include "platform/images/View.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lumisort::images {

/// The index within 0 … size − 1 that mirroring at the border sample leads to; keeps odd and even apart, so
/// that a mosaic goes on beyond its border. `size` is at least 2.
constexpr int reflect(int index, int size) {
    const int period = 2 * (size - 1);
    index %= period;
    if (index < 0) index += period;
    return index < size ? index : period - index;
}

/// A Bayer sensor's samples as they were read. The view is of the picture area; `colours` and the levels hold
/// for positions counted from its top left sample.
struct Mosaic {
    View<const std::uint16_t> samples;
    /// Channel (0 red, 1 green, 2 blue) of the four samples of a quad: top left, top right, bottom left,
    /// bottom right.
    std::array<int, 4> colours{0, 1, 1, 2};
    /// Black levels, `blackWidth` a row, repeated over the picture.
    std::vector<float> black{0};
    int blackWidth = 1;
    /// White-balanced value of one step above black, per channel.
    std::array<float, 3> scale{1, 1, 1};
    /// Samples from here on are saturated, per channel.
    std::array<std::uint16_t, 3> saturated{65535, 65535, 65535};

    int colourAt(int x, int y) const { return colours[static_cast<std::size_t>((y & 1) * 2 + (x & 1))]; }
    const float* blackRow(int y) const {
        const int rows = static_cast<int>(black.size()) / blackWidth;
        return black.data() + static_cast<std::ptrdiff_t>(y % rows) * blackWidth;
    }
    /// The white-balanced value of one sample.
    float valueAt(int x, int y) const {
        return (static_cast<float>(samples.at(x, y)) - blackRow(y)[x % blackWidth]) *
               scale[static_cast<std::size_t>(colourAt(x, y))];
    }
    bool isSaturated(int x, int y) const {
        return samples.at(x, y) >= saturated[static_cast<std::size_t>(colourAt(x, y))];
    }
};

} // namespace lumisort::images
