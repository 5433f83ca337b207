#pragma once

#include "platform/images/LinearImage.h"

#include <array>

namespace lumisort::images {

/// How a stored picture is brought upright, as three steps in this order: mirror left-right, mirror
/// top-bottom, exchange rows and columns.
struct Turn {
    bool mirrorX = false, mirrorY = false, transpose = false;

    /// An uninitialised image for an upright picture that is stored with this size.
    LinearImage imageFor(int width, int height) const {
        return transpose ? LinearImage(height, width) : LinearImage(width, height);
    }
};

/// Red, green and blue of some rows of a stored picture.
using LinearRows = std::array<View<const float>, 3>;

/// Writes the stored rows from `top` on to where they belong in the upright image. Strips may be written from
/// several threads at once.
void placeUpright(const LinearRows& rows, int top, Turn turn, LinearImage& upright);

} // namespace lumisort::images
