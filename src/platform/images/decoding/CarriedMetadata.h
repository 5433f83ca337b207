#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/TiffHead.h"

namespace lumisort::images {

/// What an exported copy keeps of a photo's metadata: descriptions, camera and dates of its TIFF directory,
/// EXIF without the maker's note (whose offsets hold within its own file alone), GPS, IPTC, and of XMP the
/// lens and serial numbers (namespace aux). What cannot be read is left out; single fields above 64 KiB too.
TiffMetadata carriedMetadata(const FileBytes& photo);

} // namespace lumisort::images
