#pragma once

#include "platform/images/Bitmap.h"

#include <cstddef>
#include <stop_token>
#include <vector>

namespace lumisort::images {

/// A picture at full size and at halves of it, so that a view of any size filters no more than about four
/// times the pixels that it shows. Pixel (x, y) of level k is the mean of level 0's pixels from (x, y) · 2^k
/// up to (x + 1, y + 1) · 2^k, as far as the picture reaches: sides are rounded up. 8-bit sRGB, alpha
/// premultiplied.
class PicturePyramid {
public:
    /// No level is made of one whose longest side is at most this.
    static constexpr int smallestSide = 512;

    /// Takes the picture over as level 0. Looks at `stop` between levels and throws tasks::Cancelled.
    explicit PicturePyramid(Bitmap picture, const std::stop_token& stop = {});

    int width() const { return levels_.front().width(); }
    int height() const { return levels_.front().height(); }
    const std::vector<Bitmap>& levels() const { return levels_; }
    /// Whether every pixel is opaque.
    bool isOpaque() const { return isOpaque_; }
    std::size_t bytes() const;

    /// The smallest level with at least one pixel for each pixel of a display, where the full picture is
    /// shown at `scale` display pixels for each of its own.
    std::size_t levelFor(double scale) const;

private:
    std::vector<Bitmap> levels_;
    bool isOpaque_ = true;
};

} // namespace lumisort::images
