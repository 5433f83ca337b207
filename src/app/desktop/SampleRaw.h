#pragma once

#include <QImage>
#include <string>

namespace lumisort::app {

/// The contents of a camera RAW file (DNG 1.4, Bayer, 16 bits, uncompressed) that holds a picture, as a
/// camera with sRGB's primaries would have taken it.
std::string sampleRaw(const QImage& picture);

} // namespace lumisort::app
