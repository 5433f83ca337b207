#pragma once

#include "platform/images/Orientation.h"

#include <cstdint>
#include <string>

namespace lumisort::images {

/// What a file's contents say it is, whatever its name says.
enum class ImageType { jpeg, png, tiff, heif, raw };

/// From the header of image 0. Sizes are as stored, before the orientation is applied; 0 when unknown. Of
/// HEIC they are those of the cropped but not yet turned primary picture; of camera RAW those of the
/// developed one, without the sensor's masked borders.
struct ImageProperties {
    ImageType type = ImageType::jpeg;
    std::int64_t width = 0;
    std::int64_t height = 0;
    /// 1…8 as in EXIF; 1 when absent or out of range. HEIC: the container's own turning and mirroring where
    /// it has any, even by zero, and the EXIF orientation only where it has none.
    Orientation orientation = Orientation::unchanged;
    std::string dateTimeOriginal; ///< the EXIF text as it stands, "" when absent
};

} // namespace lumisort::images
