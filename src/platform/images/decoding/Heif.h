#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/Picture.h"

namespace lumisort::images {

/// The primary item of an HEIC file, through libheif. All throw ImageError, also for a file whose primary
/// item is not coded in HEVC.
ImageProperties readHeifProperties(const FileBytes& file);
Picture openHeif(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop);

} // namespace lumisort::images
