#pragma once

#include "platform/files/FileUrl.h"
#include "platform/images/Bitmap.h"
#include "platform/images/ImageError.h"
#include "platform/images/ImageProperties.h"
#include "platform/images/RawDevelopment.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>

namespace lumisort::images {

/// No photo at all can be decoded, because the decoding library is missing or does not start. `what()` is one
/// sentence that names it. No ImageError: a run over many photos ends with it.
class DecoderUnavailable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Most that a decode may produce before anything is allocated.
inline constexpr std::int64_t maxDecodedPixels = 500'000'000;
inline constexpr std::int64_t maxDecodedSide = 65'535;

/// Threads of a parallel run whose workers each hold a decoded photo: it bounds memory.
inline constexpr int mostDecodesAtOnce = 4;

/// How a photo is brought to its final size.
enum class Quality {
    fine,  ///< mostly by Lanczos's filter, three lobes to a side
    rough, ///< for what looks at coarse shapes only, sooner: a JPEG by whole blocks as far as they go, then
           ///< by a cubic filter of two lobes
};

/// Decodes photos. Operations are pure functions of the file, take and return values and share nothing with
/// the caller, so that another process may serve them; many threads may call at once, and each call uses one,
/// but for `develop`.
///
/// All throw ImageError on a file that is no readable photo. Content decides, never the name: what is neither
/// JPEG, PNG, TIFF, HEVC-coded HEIF nor camera RAW does not open. What is a camera RAW opens as such or not
/// at all.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// The type by contents, none when the file is none of them. Throws ImageError when it cannot be opened.
    virtual std::optional<ImageType> identify(const files::FileUrl& url) const = 0;

    /// Reads the header only.
    virtual ImageProperties properties(const files::FileUrl& url) const = 0;

    /// The upright photo in 8-bit sRGB with straight (not premultiplied) alpha, longest side at most
    /// `maxSide` pixels, at least 1 pixel each way, never enlarged, made from the full image (never from an
    /// embedded preview), colour-managed to sRGB. A picture whose data ends early fails (also a JPEG that
    /// lacks nothing but its end mark); one with damage inside comes out as far as its library can read it.
    /// Looks at `stop` and throws tasks::Cancelled.
    virtual Bitmap thumbnail(const files::FileUrl& url, int maxSide, Quality quality = Quality::fine,
                             const std::stop_token& stop = {}) const = 0;

    /// Develops a camera RAW neutrally, as RawDevelopment.h says, on all processors; the result does not
    /// depend on their number. Throws DevelopmentError, ImageError where the file is no camera RAW, and
    /// tasks::Cancelled.
    virtual DevelopedPhoto develop(const files::FileUrl& url, const RawDevelopment& development,
                                   const std::stop_token& stop = {}) const = 0;

    /// The bytes of a TIFF file before its pixels, which are rows of little-endian 16-bit RGBA without gaps,
    /// upright, in sRGB, whose profile is embedded. Carries over what the photo's own metadata says of it:
    /// descriptions, EXIF without the maker's note, GPS, IPTC, lens and serial numbers; none of that
    /// where they cannot be read. `width` × `height`
    /// must be below 2^29.
    virtual std::string tiffHead(const files::FileUrl& photo, int width, int height) const = 0;

    /// The bytes of a JPEG file without metadata, in sRGB; transparent parts become `background` grey
    /// (0…255). `quality` is 1…100 as libjpeg has it. The bitmap must not be empty.
    virtual std::string encodeJpeg(const Bitmap& bitmap, int quality, int background = 255) const = 0;
};

struct DecoderOptions {
    bool verbose = false; ///< let what the libraries print through to the terminal
};

/// Prepares what decoder() loads. Once per process, before other threads start, because it changes the
/// environment for a moment; later calls do nothing. Without it the first decoder() does so with the
/// defaults.
void initialiseDecoder(const DecoderOptions& options = {});

/// The decoder of the process, whose library is loaded at the first call. Any thread. Throws
/// DecoderUnavailable.
const Decoder& decoder();

} // namespace lumisort::images
