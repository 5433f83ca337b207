#include "platform/images/decoding/Orientation.h"

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

constexpr std::array<Steps, 9> steps{{{false, false, false}, // 0 stands for no value
                                      {false, false, false},
                                      {false, true, false},
                                      {false, true, true},
                                      {false, false, true},
                                      {true, false, false},
                                      {true, true, false},
                                      {true, true, true},
                                      {true, false, true}}};

} // namespace

Bitmap turnUpright(Bitmap stored, int orientation) {
    const Steps step = steps[static_cast<std::size_t>(orientation)];
    if (step == steps[1]) return stored;
    const int width = step.transpose ? stored.height : stored.width;
    const int height = step.transpose ? stored.width : stored.height;
    Bitmap upright{.width = width, .height = height, .rgba = std::vector<std::uint8_t>(stored.rgba.size())};
    // Where the stored sample of (x, y) lies: start + x · alongX + y · alongY, in pixels.
    const std::ptrdiff_t row = stored.width;
    std::ptrdiff_t alongX = step.transpose ? row : 1, alongY = step.transpose ? 1 : row, start = 0;
    if (step.mirrorX) start += alongX * (width - 1), alongX = -alongX;
    if (step.mirrorY) start += alongY * (height - 1), alongY = -alongY;
    std::uint8_t* out = upright.rgba.data();
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* in = stored.rgba.data() + 4 * (start + y * alongY);
        for (int x = 0; x < width; ++x, out += 4, in += 4 * alongX) std::memcpy(out, in, 4);
    }
    return upright;
}

int composeOrientations(int first, int second) {
    Steps a = steps[static_cast<std::size_t>(first)];
    const Steps b = steps[static_cast<std::size_t>(second)];
    // Exchanging rows and columns turns one mirror into the other.
    if (b.transpose) a = {!a.transpose, a.mirrorY, a.mirrorX};
    const Steps both{a.transpose, a.mirrorX != b.mirrorX, a.mirrorY != b.mirrorY};
    for (std::size_t i = 1; i < steps.size(); ++i)
        if (steps[i] == both) return static_cast<int>(i);
    return 1;
}

} // namespace lumisort::images
