#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/FileSignature.h"
#include "platform/images/decoding/Picture.h"

namespace lumisort::images {

/// Camera RAW through LibRaw. Both throw ImageError.
ImageProperties readRawProperties(const FileBytes& file);

/// The developed sensor data, never the embedded preview: the camera's white balance, sRGB; at half size
/// where that is enough for the wanted size. A file whose samples are all alike holds no picture.
Picture openRaw(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop);

/// Whether a file is camera RAW: by its signature, or, having none, as the bare sample dump of one of the old
/// cameras that LibRaw knows by the exact size of their files.
bool isRaw(FileSignature signature, const FileBytes& file);

} // namespace lumisort::images
