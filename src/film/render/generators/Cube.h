#pragma once

#include <Halide.h>

namespace lumisort::film::pipelines {

/// A lookup cube of `nodes` × `nodes` × `nodes` colours as a 2-dimensional buffer: dimension 0 is the channel
/// (4: red, green, blue, 1), dimension 1 the node, red fastest, then green, then blue.
struct Cube {
    Halide::Func table;
    Halide::Expr nodes;
};

/// Trilinear interpolation of channel `c` at the colour (r, g, b), each clamped to 0…1.
inline Halide::Expr lookUp(const Cube& cube, const Halide::Expr& c, const Halide::Expr& r,
                           const Halide::Expr& g, const Halide::Expr& b) {
    using namespace Halide;
    struct Axis {
        Expr low, weight;
    };
    // The high node of a colour at the cube's last node has weight 0; taking the last but one as its low node
    // with weight 1 is the same number and keeps both nodes inside.
    const auto axis = [&cube](const Expr& value) {
        const Expr position = clamp(value, 0.0f, 1.0f) * cast<float>(cube.nodes - 1);
        const Expr low = clamp(cast<int>(position), 0, cube.nodes - 2);
        return Axis{low, position - cast<float>(low)};
    };
    const Axis red = axis(r), green = axis(g), blue = axis(b);
    const Expr corner = (blue.low * cube.nodes + green.low) * cube.nodes + red.low;
    const auto mix = [](const Expr& a, const Expr& b2, const Expr& weight) { return a + (b2 - a) * weight; };
    const auto alongRed = [&](const Expr& node) {
        return mix(cube.table(c, node), cube.table(c, node + 1), red.weight);
    };
    const auto alongGreen = [&](const Expr& node) {
        return mix(alongRed(node), alongRed(node + cube.nodes), green.weight);
    };
    return mix(alongGreen(corner), alongGreen(corner + cube.nodes * cube.nodes), blue.weight);
}

} // namespace lumisort::film::pipelines
