#pragma once

#include <array>

namespace lumisort::images {

/// How a camera's samples become linear sRGB. Three channels: red, green, blue; a sensor may have four.
struct CameraColour {
    static constexpr int mostChannels = 4;
    template <class Value>
    using PerChannel = std::array<Value, mostChannels>;

    int channels = 3;
    /// Full saturation of each channel after white balance. The smallest is 1: all channels reach it, so that
    /// anything up to it can be neutral.
    PerChannel<float> saturation{1, 1, 1, 1};
    /// Rows red, green, blue of linear sRGB over the white-balanced channels; neutral stays neutral.
    std::array<PerChannel<float>, 3> toLinear{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}};
};

} // namespace lumisort::images
