#pragma once

#include "platform/images/Bitmap.h"

namespace lumisort::images {

/// Whether orientation 1…8 swaps width and height.
constexpr bool swapsSides(int orientation) {
    return orientation >= 5;
}

/// The stored image as it is to be seen: orientation 1…8 as in EXIF (2.32, 4.6.4, tag 0x0112).
Bitmap turnUpright(Bitmap stored, int orientation);

/// The one orientation that stands for `first` and then `second`.
int composeOrientations(int first, int second);

} // namespace lumisort::images
