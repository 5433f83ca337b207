#include "platform/images/decoding/Upright.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace lumisort::images {
namespace {

/// An orientation as three steps in this order: exchange rows and columns, mirror left-right, mirror
/// top-bottom.
struct Steps {
    bool transpose, mirrorX, mirrorY;
    friend bool operator==(const Steps&, const Steps&) = default;
};

/// By the value of the orientation, from 1.
constexpr std::array<Steps, 8> steps{{{false, false, false},
                                      {false, true, false},
                                      {false, true, true},
                                      {false, false, true},
                                      {true, false, false},
                                      {true, true, false},
                                      {true, true, true},
                                      {true, false, true}}};

constexpr Steps stepsOf(Orientation orientation) {
    return steps[static_cast<std::size_t>(orientation) - 1];
}

} // namespace

Bitmap turnUpright(Bitmap stored, Orientation orientation) {
    if (orientation == Orientation::unchanged || stored.isEmpty()) return stored;
    const Steps step = stepsOf(orientation);
    const int width = step.transpose ? stored.height() : stored.width();
    const int height = step.transpose ? stored.width() : stored.height();
    Bitmap upright(width, height);
    // Where the stored sample of (x, y) lies: start + x · alongX + y · alongY, in pixels.
    const std::ptrdiff_t row = stored.width();
    std::ptrdiff_t alongX = step.transpose ? row : 1, alongY = step.transpose ? 1 : row, start = 0;
    if (step.mirrorX) start += alongX * (width - 1), alongX = -alongX;
    if (step.mirrorY) start += alongY * (height - 1), alongY = -alongY;
    std::uint8_t* out = upright.rgba().data();
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* in = stored.rgba().data() + 4 * (start + y * alongY);
        for (int x = 0; x < width; ++x, out += 4, in += 4 * alongX) std::memcpy(out, in, 4);
    }
    return upright;
}

Orientation compose(Orientation first, Orientation second) {
    Steps a = stepsOf(first);
    const Steps b = stepsOf(second);
    // Exchanging rows and columns turns one mirror into the other.
    if (b.transpose) a = {!a.transpose, a.mirrorY, a.mirrorX};
    const Steps both{a.transpose, a.mirrorX != b.mirrorX, a.mirrorY != b.mirrorY};
    const auto found = std::ranges::find(steps, both); // the symmetries are a group: it is there
    return static_cast<Orientation>(found - steps.begin() + 1);
}

} // namespace lumisort::images
