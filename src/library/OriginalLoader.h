#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"
#include "platform/images/PicturePyramid.h"

#include <cstdint>
#include <stdexcept>
#include <stop_token>

namespace lumisort::library {

/// An original cannot be shown. `what()` is fit to be shown in its place.
class OriginalError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Decodes originals at full size, upright and in sRGB, to be looked at.
class OriginalLoader {
public:
    /// Most pixels of an original, by what its header says. Beyond, one decode would take more than 320 MB.
    static constexpr std::int64_t maxPixels = 80'000'000;

    /// Blocks for as long as the decode takes (a third of a second for 24 megapixels). Throws OriginalError,
    /// and tasks::Cancelled when stopped. Any thread.
    static images::PicturePyramid load(files::FileSystem& system, const files::FileUrl& url,
                                       const std::stop_token& stop = {});
};

} // namespace lumisort::library
