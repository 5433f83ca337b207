#pragma once

#include "film/render/Planes.h"
#include "platform/images/Bitmap.h"
#include "platform/images/LinearImage.h"

#include <cstdint>
#include <vector>

namespace lumisort::film {

/// An owning 16-bit RGBA image of some rows of a picture, sRGB, opaque.
struct CodeRows {
    int width = 0;
    int firstRow = 0;
    int rowCount = 0;
    std::vector<std::uint16_t> rgba; ///< 4 · width · rowCount codes
};

/// Encodes linear display RGB into the part of `rows` that it covers; several threads may write disjoint
/// parts. What lies outside of 0…1 is clipped.
void encode(const PlaneView& light, CodeRows& rows);

/// A whole picture in 8 bits.
images::Bitmap displayBitmap(const images::LinearImage& light);

} // namespace lumisort::film
