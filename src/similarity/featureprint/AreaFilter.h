#pragma once

#include "platform/images/Bitmap.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lumisort::similarity {

/// Shrinks pictures by averaging: each pixel of the result is the mean of the source's area under it, parts
/// of source pixels counted by their area, in the source's own (encoded) values. Proportions need not be
/// kept, and a source smaller than the result works too. Transparent pixels are laid over white first.
///
/// One object serves one thread. It keeps memory between calls, so that only a picture wider than all before
/// it, or a transparent one larger than all transparent ones before it, allocates.
class AreaFilter {
public:
    /// Pictures up to this width never allocate, unless they are transparent.
    static constexpr int reservedWidth = 1024;

    AreaFilter();

    /// Fills `result`, width × height pixels of red, green and blue in 0…255, row by row; at most 1,024 ×
    /// 1,024. The bitmap must hold 1…65,535 pixels each way and 4 · width · height bytes.
    void shrink(const images::Bitmap& source, int width, int height, std::span<float> result);

    /// The pixels of the source under one pixel of the result, along one axis. Lengths are in a unit in which
    /// both grids lie on whole numbers: a source pixel is as many units long as the result has pixels, and
    /// the other way round. Pixels between the first and the last lie under it as a whole.
    struct Cover {
        std::int64_t first, last;
        std::int64_t firstLength, lastLength; ///< `lastLength` is 0 where both are one pixel
    };

private:
    std::vector<std::uint8_t> opaque_; ///< the picture over white
    std::vector<float> sums_;          ///< down the rows under one row of the result, per column and channel
    std::vector<Cover> columns_;
};

} // namespace lumisort::similarity
