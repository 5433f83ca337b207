#pragma once

#include "platform/images/Bitmap.h"

namespace lumisort::similarity {

/// Photos with less detail have no print: all flat pictures would match each other.
inline constexpr double leastDetail = 0.025;

/// The standard deviation of a photo's tones, 0…½ on a scale from black to white, when it is stretched over
/// 32 × 32 grey pixels of 8 bits; transparent parts count as white. Any thread.
double photoDetail(const images::Bitmap& photo);

} // namespace lumisort::similarity
