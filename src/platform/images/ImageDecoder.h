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

/// From the header of image 0. Sizes are as stored, before the orientation is applied; 0 when unknown. Of
/// HEIC they are those of the cropped but not yet turned primary picture; of camera RAW those of the
/// developed one, without the sensor's masked borders.
struct ImageProperties {
    ImageType type = ImageType::jpeg;
    std::int64_t width = 0;
    std::int64_t height = 0;
    /// 1…8 as in EXIF; 1 when absent or out of range. HEIC: the container's own turning and mirroring where
    /// it has any, even by zero, and the EXIF orientation only where it has none.
    int orientation = 1;
    std::string dateTimeOriginal; ///< the EXIF text as it stands, "" when absent
};

/// Most that a decode may produce before anything is allocated.
inline constexpr std::int64_t maxDecodedPixels = 500'000'000;
inline constexpr std::int64_t maxDecodedSide = 65'535;

/// Threads of a parallel run whose workers each hold a decoded photo: it bounds memory.
inline constexpr int mostDecodesAtOnce = 4;

struct DecoderOptions {
    bool verbose = false; ///< let what the libraries print through to the terminal
};

/// Sets up the libraries behind the service. Once per process, before other threads start, because it changes
/// the environment for a moment; later calls do nothing. Without it the first use sets up with the defaults.
/// Throws ImageError.
void initialiseDecoder(const DecoderOptions& options = {});

// The operations below are pure functions of the file, may be called from many threads at once, use one
// thread each, and throw ImageError on a file that is no readable photo. Content decides, never the name:
// what is neither JPEG, PNG, TIFF, HEVC-coded HEIF nor camera RAW does not open. What is a camera RAW opens
// as such or not at all.

/// Reads the header only.
ImageProperties readProperties(const files::FileUrl& url);

/// The upright photo in 8-bit sRGB with straight (not premultiplied) alpha, longest side at most `maxSide`
/// pixels, at least 1 pixel each way, never enlarged, made from the full image (never from an embedded
/// preview), colour-managed to sRGB. A picture whose data ends early fails (also a JPEG that lacks nothing
/// but its end mark); one with damage inside comes out as far as its library can read it. Looks at `stop` and
/// throws tasks::Cancelled.
Bitmap decodeThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop = {});

/// The same for what looks at coarse shapes only, sooner: a JPEG is shrunk by whole blocks as far as they go,
/// and for the rest by a filter that looks less far.
Bitmap decodeRoughThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop = {});

/// The type by contents, none when the file is none of them. Throws ImageError when it cannot be opened.
std::optional<ImageType> sniffType(const files::FileUrl& url);

} // namespace lumisort::images
