#include "platform/images/development/Turn.h"

#include <algorithm>

namespace lumisort::images {
namespace {

/// Destination of stored sample (x, y): first + x · alongX + y · alongY.
struct Placement {
    float* first;
    std::ptrdiff_t alongX, alongY;
};

Placement placementIn(View<float> upright, Turn turn) {
    const int width = turn.transpose ? upright.height : upright.width;
    const int height = turn.transpose ? upright.width : upright.height;
    std::ptrdiff_t alongX = turn.transpose ? upright.stride : 1;
    std::ptrdiff_t alongY = turn.transpose ? 1 : upright.stride;
    float* first = upright.data;
    if (turn.mirrorX) first += alongX * (width - 1), alongX = -alongX;
    if (turn.mirrorY) first += alongY * (height - 1), alongY = -alongY;
    return {first, alongX, alongY};
}

} // namespace

void placeUpright(const LinearRows& rows, int top, Turn turn, LinearImage& upright) {
    for (int channel = 0; channel < 3; ++channel) {
        const View<const float>& stored = rows[static_cast<std::size_t>(channel)];
        const Placement to = placementIn(upright.plane(channel), turn);
        float* const start = to.first + top * to.alongY;
        if (turn.transpose) { // Down the stored columns, so that neighbours are written together.
            for (int x = 0; x < stored.width; ++x)
                for (int y = 0; y < stored.height; ++y)
                    start[x * to.alongX + y * to.alongY] = stored.at(x, y);
            continue;
        }
        for (int y = 0; y < stored.height; ++y) {
            float* const out = start + y * to.alongY;
            if (turn.mirrorX)
                for (int x = 0; x < stored.width; ++x) out[x * to.alongX] = stored.at(x, y);
            else
                std::copy_n(stored.row(y), stored.width, out);
        }
    }
}

} // namespace lumisort::images
