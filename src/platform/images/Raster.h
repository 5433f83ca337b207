#pragma once

#include "platform/images/ByteSource.h"
#include "platform/images/Picture.h"

namespace lumisort::images {

/// JPEG, PNG and TIFF, through the one loader of libvips that `type` names. All throw ImageError.
ImageProperties readRasterProperties(const FileBytes& file, ImageType type);
Picture openRaster(const FileBytes& file, ImageType type, int maxSide, const std::stop_token& stop);

} // namespace lumisort::images
