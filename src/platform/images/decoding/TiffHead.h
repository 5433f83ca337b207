#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

namespace lumisort::images {

/// One field of a TIFF directory; values in little-endian byte order.
struct TiffField {
    enum class Type : std::uint16_t { byte = 1, ascii = 2, two = 3, four = 4, undefined = 7 };

    std::uint16_t type = 0; ///< 1 … 12 as in TIFF 6.0
    std::uint32_t count = 0;
    std::string bytes;

    static TiffField of(Type type, std::span<const std::uint32_t> values);
    static TiffField of(Type type, std::string bytes);
};

/// Fields by their tags.
using TiffDirectory = std::map<std::uint16_t, TiffField>;

/// What a picture's file says about it beside its pixels.
struct TiffMetadata {
    TiffDirectory image, exif, gps;
};

/// The bytes of a TIFF file (revision 6.0) before its pixels: an uncompressed upright picture of 16-bit RGBA
/// with straight alpha, whose rows follow without gaps, little-endian. Fields that describe the pixels
/// replace those of the same tag in `metadata`. The picture must stay below 4 GiB.
std::string tiffHead(int width, int height, TiffMetadata metadata);

} // namespace lumisort::images
