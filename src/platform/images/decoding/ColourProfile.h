#pragma once

#include "platform/images/Bitmap.h"

#include <cstdint>
#include <memory>
#include <span>
#include <utility>

namespace lumisort::images {

/// The way from the colours of an embedded RGB profile to sRGB: relative colorimetric with black point
/// compensation. Making one takes as long as decoding a small photo, so the latest few are kept: the photos
/// of one camera share their profile. Any thread.
class ColourProfile {
public:
    /// None where the bytes are no profile of RGB colours, or no usable one.
    static std::shared_ptr<const ColourProfile> find(std::span<const std::uint8_t> profile);

    /// Alpha stays as it is.
    void toSRGB(Bitmap& bitmap) const;

private:
    explicit ColourProfile(std::shared_ptr<void> transform) : transform_(std::move(transform)) {}
    static std::shared_ptr<const ColourProfile> make(std::span<const std::uint8_t> profile);

    std::shared_ptr<void> transform_; ///< a cmsHTRANSFORM
};

} // namespace lumisort::images
