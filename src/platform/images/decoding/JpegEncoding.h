#pragma once

#include "platform/images/Bitmap.h"

#include <string>

namespace lumisort::images {

/// As Decoder::encodeJpeg.
std::string writeJpeg(const Bitmap& bitmap, int quality, int background);

} // namespace lumisort::images
