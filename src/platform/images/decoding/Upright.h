#pragma once

#include "platform/images/Bitmap.h"
#include "platform/images/Orientation.h"

namespace lumisort::images {

/// The stored image as it is to be seen.
Bitmap turnUpright(Bitmap stored, Orientation orientation);

/// The one orientation that stands for `first` and then `second`.
Orientation compose(Orientation first, Orientation second);

} // namespace lumisort::images
