#pragma once

#include <QImage>
#include <array>
#include <cstdint>

namespace lumisort::film {

/// How often each 8-bit value occurs in a picture, for red, green, blue and luminance (Rec. 709 weights of
/// the encoded values).
struct ToneHistogram {
    static constexpr int levels = 256;
    using Counts = std::array<std::uint32_t, levels>;

    Counts red{}, green{}, blue{}, luminance{};
    /// Share of the pixels in which some channel is 0, and in which one is 255; 0 … 1.
    double clippedShadows = 0, clippedHighlights = 0;

    /// Counts every pixel of an RGB32, RGBX8888 or RGBA8888 picture; others are converted first.
    static ToneHistogram of(const QImage& picture);
};

} // namespace lumisort::film
