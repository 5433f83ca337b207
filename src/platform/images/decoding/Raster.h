#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/Picture.h"

namespace lumisort::images {

/// PNG and TIFF, through the one loader of libvips that `type` names. Both throw ImageError.
ImageProperties readRasterProperties(const FileBytes& file, ImageType type);
Picture openRaster(const FileBytes& file, ImageType type, const std::stop_token& stop);

} // namespace lumisort::images
