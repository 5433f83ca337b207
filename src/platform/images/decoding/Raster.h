#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/Picture.h"

namespace lumisort::images {

/// How a JPEG is brought near its final size.
enum class Shrinking {
    fine, ///< mostly by the resampling filter
    fast, ///< by whole blocks as far as they go
};

/// JPEG, PNG and TIFF, through the one loader of libvips that `type` names. All throw ImageError.
ImageProperties readRasterProperties(const FileBytes& file, ImageType type);
Picture openRaster(const FileBytes& file, ImageType type, int maxSide, Shrinking shrinking,
                   const std::stop_token& stop);

} // namespace lumisort::images
