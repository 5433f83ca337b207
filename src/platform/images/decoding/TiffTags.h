#pragma once

#include "platform/images/Orientation.h"
#include "platform/images/decoding/ByteSource.h"

#include <optional>
#include <string>

namespace lumisort::images {

/// The two EXIF fields that the program looks at, from a TIFF structure: a TIFF-like file, or the block that
/// JPEG, PNG and HEIF carry (TIFF 6.0; EXIF 2.32, 4.6).
struct ExifFields {
    std::optional<Orientation> orientation; ///< tag 0x0112 of the first directory
    std::string dateTimeOriginal; ///< tag 0x9003 of the EXIF directory, up to its first NUL; "" when absent
};

/// Damaged structures give what can still be read, and never more than a few kilobytes of reading.
ExifFields readExifFields(const ByteSource& tiff);

/// The same from a block that may start with the "Exif\0\0" of a JPEG segment.
ExifFields readExifFields(std::span<const std::uint8_t> block);

/// What the first channel behind the colours of a TIFF is (tag 0x0152): 0 something else, 1 premultiplied
/// alpha, 2 straight alpha. None where the tag is absent.
std::optional<std::uint32_t> readExtraSample(const ByteSource& tiff);

/// Whether a file that starts like a TIFF holds undeveloped sensor data: a DNG, a Canon or Phase One mark, or
/// a directory whose samples lie behind a colour filter array, are linear sensor data, or are compressed in
/// a camera maker's own way. What a camera writes as finished TIFF has none of these.
bool holdsSensorData(const ByteSource& tiff);

} // namespace lumisort::images
