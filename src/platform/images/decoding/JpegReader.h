#pragma once

#include "platform/images/decoding/ByteSource.h"

#include <jpeglib.h>

#include <csetjmp>
#include <cstdio>
#include <stop_token>
#include <vector>

namespace lumisort::images {

/// One run of libjpeg over one file: the header first, then rows from the top. Not to be moved, as libjpeg
/// points into it. Everything throws ImageError.
class JpegReader {
public:
    /// Reads the header. The file must stay for as long as the reader.
    JpegReader(const FileBytes& file, std::stop_token stop);
    ~JpegReader();
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    /// Sizes and colours.
    const jpeg_decompress_struct& info() const { return info_; }
    /// Whether libjpeg goes over the whole picture more than once, before the first row comes out.
    bool hasManyScans() { return jpeg_has_multiple_scans(&info_) != FALSE; }
    /// The block of the first EXIF segment, from its "Exif\0\0" on; empty when there is none.
    std::span<const std::uint8_t> exif() const;
    /// The embedded profile, put together from its segments; empty when there is none or parts are missing.
    std::vector<std::uint8_t> profile();

    /// Begins to decode at a `shrink`-th of the size (1, 2, 4 or 8), as grey, RGB or CMYK.
    void start(int shrink);
    /// The next row: output_width × output_components samples.
    void readRow(std::uint8_t* row);

private:
    /// Runs calls of libjpeg, which leaves them by a long jump when one fails: nothing in them may need a
    /// destructor.
    template <class Calls>
    void guarded(Calls&& calls);
    void fill();
    void skip(long count);

    const FileBytes& file_;
    std::stop_token stop_;
    std::uint64_t position_ = 0; ///< in the file, of what is read next
    std::uint64_t end_;          ///< up to where the file may be read
    std::vector<std::uint8_t> window_;
    jpeg_decompress_struct info_{};
    jpeg_error_mgr errors_{};
    jpeg_source_mgr source_{};
    std::jmp_buf jump_;
};

} // namespace lumisort::images
