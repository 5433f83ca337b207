#pragma once

#include "platform/files/FileUrl.h"
#include "platform/images/Bitmap.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>

namespace lumisort::images {

/// What a file's contents say it is, whatever its name says.
enum class ImageType { jpeg, png, tiff, heif, raw };

/// The decoder could not read a photo. `what()` is one sentence without the file's name.
class ImageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// From the header of image 0. Sizes are as stored, before the orientation is applied; 0 when unknown.
struct ImageProperties {
    ImageType type = ImageType::jpeg;
    std::int64_t width = 0;
    std::int64_t height = 0;
    int orientation = 1; ///< 1…8 as in EXIF; 1 when absent or out of range. HEIF: what has to be applied to
                         ///< the stored image (see ImageDecoder.cpp)
    std::string dateTimeOriginal{}; ///< the EXIF text as it stands, "" when absent
};

/// Most that a decode may produce before anything is allocated.
inline constexpr std::int64_t maxDecodedPixels = 500'000'000;
inline constexpr std::int64_t maxDecodedSide = 65'535;

/// How the libraries behind the service are set up; once per process, before any other call.
struct DecoderOptions {
    bool verbose = false; ///< let what the libraries print through to the terminal
};
void initialiseDecoder(const DecoderOptions& options = {});

/// The three operations below are pure functions of the file, may be called from many threads at once, use
/// one thread each, and throw ImageError on a file that is no readable photo. Content decides, never the
/// name.

/// Reads the header only.
ImageProperties readProperties(const files::FileUrl& url);

/// The upright photo in 8-bit sRGB with straight (not premultiplied) alpha, longest side at most `maxSide`
/// pixels, at least 1 pixel each way, never enlarged, made from the full image (never from an embedded
/// preview), colour-managed to sRGB. Looks at `stop` and throws tasks::Cancelled.
Bitmap decodeThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop = {});

/// The type by contents, none when the file is none of them.
std::optional<ImageType> sniffType(const files::FileUrl& url);

} // namespace lumisort::images
