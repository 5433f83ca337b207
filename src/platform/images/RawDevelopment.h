#pragma once

#include "platform/images/ImageError.h"
#include "platform/images/LinearImage.h"

#include <string>

namespace lumisort::images {

/// Neutral development of camera RAW: white balance as shot, linear sRGB primaries, black level and scaling
/// linear; no tone curve, no sharpening, no noise reduction, no correction of lens or exposure. The brightest
/// neutral that all channels can tell is 1; brighter light and negative components are kept. Where some
/// channels are saturated, the others and the colour of the light around tell how bright they were.
struct RawDevelopment {
    /// Longest side that the developed photo should have at least; where half the sensor's size reaches it
    /// and the sensor allows it, the photo is developed at half size, which is several times as fast. 0: full
    /// size, by the best demosaicing.
    int longestSide = 0;
};

/// A photo as its sensor saw it, upright.
struct DevelopedPhoto {
    LinearImage image;
    /// Size at full scale, upright; `image` may be half as large.
    int fullWidth = 0;
    int fullHeight = 0;
};

/// Why a camera RAW could not be developed.
class DevelopmentError : public ImageError {
public:
    enum class Reason {
        unsupported, ///< a camera or a kind of file that the library does not know
        damaged,     ///< cut short, or without a picture
    };
    DevelopmentError(Reason reason, const std::string& message) : ImageError(message), reason_(reason) {}
    Reason reason() const { return reason_; }

private:
    Reason reason_;
};

} // namespace lumisort::images
