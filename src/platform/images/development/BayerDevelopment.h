#pragma once

#include "platform/images/LinearImage.h"
#include "platform/images/development/CameraColour.h"
#include "platform/images/development/Mosaic.h"
#include "platform/images/development/Turn.h"

#include <stop_token>

namespace lumisort::images {

/// A Bayer mosaic to scene-linear sRGB, upright, at full size, by ratio-corrected demosaicing. At least 2 × 2
/// samples, three channels. The result does not depend on the number of processors. Throws tasks::Cancelled.
LinearImage demosaicBayer(const Mosaic& mosaic, const CameraColour& colour, Turn turn,
                          const std::stop_token& stop);

/// The same at half size, rounded up: one pixel of each 2 × 2 samples.
LinearImage halveBayer(const Mosaic& mosaic, const CameraColour& colour, Turn turn,
                       const std::stop_token& stop);

} // namespace lumisort::images
