#pragma once

#include <string>

namespace lumisort::images {

/// The ICC profile of sRGB (IEC 61966-2-1), the same bytes at each call.
std::string srgbProfile();

} // namespace lumisort::images
