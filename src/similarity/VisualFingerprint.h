#pragma once

#include "similarity/FingerprintOrientation.h"
#include "similarity/SimilarityLevel.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace lumisort::similarity {

/// Cells along each side of a fingerprint's colour layout.
inline constexpr int colourGridSide = 8;
/// Values of a complete colour layout: red, green and blue of each cell.
inline constexpr std::size_t colourValueCount = 3 * colourGridSide * colourGridSide;
/// A photo whose grey values deviate less than this is too plain to be told from others.
inline constexpr double lowDetailDeviation = 0.025;
/// Least correlation of brightness that a turned or mirrored match must have.
inline constexpr double minimumStructureCorrelation = 0.9;

/// What near-duplicate matching knows of one photo: a description that survives re-encoding, resizing, small
/// edits, quarter turns and mirroring. Lives in memory only.
struct VisualFingerprint {
    /// Perceptual hash of the upright photo: which low frequencies of its grey image lie above their median.
    std::uint64_t hash = 0;
    /// Mean red, green and blue (0…1) of each cell of an 8 × 8 grid, row by row from the top left.
    std::vector<double> colors;
    double aspect = 0;    ///< width ÷ height of the upright photo
    double deviation = 0; ///< population standard deviation of the grey values, which lie on 0…1
    /// The hash of the photo after each Orientation, in that order.
    std::vector<std::uint64_t> orientationHashes;

    /// Whether the photo has too little detail to be matched with anything.
    bool isLowDetail() const { return deviation < lowDetailDeviation; }

    /// The smallest number of hash bits in which this fingerprint differs from `anchor` in an orientation of
    /// the anchor that passes every test of `level`: shape, hash, colour layout and, other than upright, the
    /// correlation of brightness. None where no orientation does. Not symmetric.
    std::optional<int> matchDistance(const VisualFingerprint& anchor, SimilarityLevel level) const;

    /// Correlation (−1…1) of the brightness of this colour layout with that of `other` in `orientation`. None
    /// where one of them is incomplete or almost flat.
    std::optional<double> structureCorrelation(const VisualFingerprint& other,
                                               Orientation orientation) const;

    friend bool operator==(const VisualFingerprint&, const VisualFingerprint&) = default;
};

} // namespace lumisort::similarity
