#pragma once

#include "platform/images/Orientation.h"
#include "platform/images/decoding/Vips.h"

#include <memory>

namespace lumisort::images {

/// What stands behind the colour channels.
enum class Alpha {
    none,          ///< nothing, or a channel that is no transparency
    straight,      ///< as PNG has it
    premultiplied, ///< the colours are already multiplied by it
};

/// What a photo is decoded for.
struct WantedSize {
    int maxSide; ///< of the longest side, in pixels
    Quality quality;
};

/// A photo opened for decoding, before it is turned upright and brought to its final size and colours.
struct Picture {
    std::shared_ptr<void> storage; ///< what `image` reads its samples from, where that is ours to keep
    ImageReference image;          ///< evaluated on demand, from the top; the embedded profile is attached
    std::int64_t fullWidth = 0;    ///< as decoded at full size, before `orientation`; `image` may be smaller
    std::int64_t fullHeight = 0;
    Orientation orientation = Orientation::unchanged; ///< what remains to be applied
    Alpha alpha = Alpha::straight; ///< counts where `image` has more channels than colours
};

/// Throws ImageError above `maxDecodedPixels` or `maxDecodedSide`.
void checkDecodable(std::int64_t width, std::int64_t height);

/// The factor by which a photo must shrink to fit, at most 1.
double scaleToFit(std::int64_t width, std::int64_t height, int maxSide);

/// The photo upright, in 8-bit sRGB with straight alpha, longest side at most `maxSide`. Throws ImageError,
/// and tasks::Cancelled when asked to stop.
Bitmap renderPicture(Picture picture, const WantedSize& wanted, const std::stop_token& stop);

} // namespace lumisort::images
