#pragma once

#include "platform/images/Bitmap.h"

#include <string>

namespace lumisort::images {

/// The bytes of a JPEG file without metadata, in sRGB; transparent parts become `background` grey (0…255).
/// `quality` is 1…100 as libjpeg has it. The bitmap must not be empty. Any thread; throws ImageError.
std::string encodeJpeg(const Bitmap& bitmap, int quality, int background = 255);

} // namespace lumisort::images
