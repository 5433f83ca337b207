#pragma once

#include "platform/images/LinearImage.h"
#include "platform/images/development/CameraColour.h"
#include "platform/images/development/Turn.h"

#include <cstdint>
#include <stop_token>

namespace lumisort::images {

/// All channels of a sensor at each pixel: four 16-bit samples, of which the first `channels` count, black at
/// 0.
struct SensorImage {
    const std::uint16_t (*samples)[CameraColour::mostChannels] = nullptr;
    int width = 0;
    int height = 0;
    /// White-balanced value of one step, per channel.
    CameraColour::PerChannel<float> scale{};
};

/// To scene-linear sRGB, upright. A single channel is grey. Throws tasks::Cancelled.
LinearImage developSensorImage(const SensorImage& sensor, const CameraColour& colour, Turn turn,
                               const std::stop_token& stop);

} // namespace lumisort::images
