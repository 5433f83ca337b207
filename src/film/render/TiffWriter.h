#pragma once

#include "platform/files/FileSystem.h"

#include <cstdint>
#include <span>

namespace lumisort::film {

/// Writes an uncompressed TIFF (revision 6.0) of 16-bit RGBA with the sRGB profile embedded, row after row.
/// The picture must stay below 4 GiB: 80 megapixels have 640 MB.
class TiffWriter {
public:
    /// Writes everything before the pixels. Throws FileError.
    TiffWriter(files::OpenFile& file, int width, int height);

    /// The next rows, 4 · width codes each. Throws FileError.
    void write(std::span<const std::uint16_t> rgba);

private:
    files::OpenFile& file_;
};

} // namespace lumisort::film
