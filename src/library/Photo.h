#pragma once

#include "platform/files/FileUrl.h"
#include "platform/time/Timestamp.h"

#include <cstdint>
#include <optional>

namespace lumisort::library {

/// One photo of the library as a scan found it. `url` is its identity in lists and selections.
struct Photo {
    files::FileUrl url;
    std::int64_t bytes = 0; ///< file size, 0 when it could not be read
    std::int64_t width = 0; ///< stored pixel size, before orientation; 0 when unknown
    std::int64_t height = 0;
    std::optional<time::Timestamp> date; ///< EXIF DateTimeOriginal, read as local wall-clock time

    friend bool operator==(const Photo&, const Photo&) = default;
};

} // namespace lumisort::library
