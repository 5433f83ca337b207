#pragma once

#include <array>
#include <cstddef>

namespace lumisort::similarity {

/// Numbers in a print: 2 × 2 cells of the picture, 96 features each.
inline constexpr std::size_t featurePrintLength = 384;

/// What a photo looks like, as a point on the unit sphere: photos of one scene lie close together. Filled by
/// FeaturePrintModel::print; every value is finite and the Euclidean norm is 1 up to rounding. Ordered by
/// cell (top left, top right, bottom left, bottom right), then by feature. Aligned to a cache line.
struct alignas(64) FeaturePrint {
    std::array<float, featurePrintLength> values{};

    friend bool operator==(const FeaturePrint&, const FeaturePrint&) = default;
};

/// The Euclidean distance, 0…2 between prints. Symmetric, and 0 between equal prints, to the last bit; on one
/// machine always the same number. Not a number only where a print holds one. Any thread; never allocates.
float distance(const FeaturePrint& a, const FeaturePrint& b) noexcept;

} // namespace lumisort::similarity
