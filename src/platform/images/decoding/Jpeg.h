#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/Picture.h"

namespace lumisort::images {

/// JPEG through libjpeg itself, not through libvips's loader: that one hands libjpeg 4 KB at a time, and
/// libjpeg's fast entropy decoder needs some 3 KB ahead of it. Both throw ImageError.
ImageProperties readJpegProperties(const FileBytes& file);
/// Rows are decoded as they are asked for, from the top.
Picture openJpeg(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop);

} // namespace lumisort::images
