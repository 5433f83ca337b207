#pragma once

#include "platform/images/Orientation.h"
#include "platform/images/decoding/ByteSource.h"

#include <optional>

namespace lumisort::images {

/// What the boxes of an HEIF file say about its primary item and libheif does not tell (ISO/IEC 23008-12).
struct HeifPrimary {
    bool hevc = false; ///< coded in HEVC, or a grid, an overlay or an identity of items that are
    /// The turning and mirroring that the container asks for, none where it has
    /// neither property. A rotation by zero counts: the container then says that nothing is to be done.
    std::optional<Orientation> orientation;
};

/// None when the boxes are damaged or name no primary item.
std::optional<HeifPrimary> readHeifPrimary(const ByteSource& file);

} // namespace lumisort::images
