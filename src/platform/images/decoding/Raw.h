#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/Picture.h"

namespace lumisort::images {

/// Camera RAW through LibRaw. Both throw ImageError.
ImageProperties readRawProperties(const FileBytes& file);

/// The developed sensor data, never the embedded preview: the camera's white balance, sRGB; at half size
/// where that is enough for `maxSide`. A file whose samples are all alike holds no picture.
Picture openRaw(const FileBytes& file, int maxSide, const std::stop_token& stop);

/// Whether a file without any mark is the bare sample dump of one of the old cameras that LibRaw knows by the
/// exact size of their files.
bool isBareRaw(const FileBytes& file);

} // namespace lumisort::images
