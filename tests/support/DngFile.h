#pragma once

#include "platform/files/FileUrl.h"
#include "support/TemporaryFolder.h"

#include <array>
#include <functional>
#include <string>

namespace lumisort::test {

using Light = std::array<double, 3>; ///< linear sRGB

/// A camera that photographs a scene of known light into DNG files, without noise.
struct TestCamera {
    enum class Sensor { bayer, xTrans, fourColour, monochrome, linear };

    Sensor sensor = Sensor::bayer;
    /// Channels of a quad's four samples: 0 red, 1 green, 2 blue.
    std::array<int, 4> bayerPattern{0, 1, 1, 2};
    /// What the sensor reads of white light, the largest 1: the inverse of the white balance.
    Light neutral{1, 1, 1};
    /// The camera's own primaries: rows red, green and blue of the camera over linear sRGB, each adding up
    /// to 1.
    std::array<Light, 3> primaries{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    int orientation = 1;
    int black = 512;
    int white = 15'360;

    /// `light(x, y)`: the scene at a pixel of the stored picture; of a monochrome sensor, its green is read.
    /// 1 in a channel's neutral saturates the channel.
    files::FileUrl photograph(const TemporaryFolder& folder, const std::string& name, int width, int height,
                              const std::function<Light(int, int)>& light) const;

    /// The channel of one sample: 0 red, 1 green, 2 blue, 3 the fourth of a four-colour sensor.
    int channelAt(int x, int y) const;
    /// What the sensor reads of light in a channel: 1 saturates it. Not clipped.
    double response(const Light& light, int channel) const;
};

} // namespace lumisort::test
