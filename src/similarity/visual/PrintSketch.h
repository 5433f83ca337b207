#pragma once

#include "similarity/featureprint/FeaturePrint.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// Coordinates of a sketch. With 64, one pair of different photos in sixty needs a second look at the radius
/// of the balanced level; 48 leave one in forty, 96 one in a hundred.
inline constexpr std::size_t sketchLength = 64;

/// A short stand-in for a print: its coordinates along 63 orthonormal axes and the length of the rest. Prints
/// have length 1, so a·b = 1 − d² ÷ 2; by the Cauchy–Schwarz inequality the scalar product of two sketches is
/// at least that of the prints, and two sketches with a small product belong to prints that are far apart.
using PrintSketch = std::array<float, sketchLength>;

/// Sixteen sketches side by side: values[k][i] is coordinate k of sketch i.
struct alignas(64) SketchBlock {
    static constexpr std::size_t width = 16;

    std::array<std::array<float, width>, sketchLength> values{};
};

/// The sketches of prints, by their numbers, along the axes that keep most of what tells them apart.
class PrintSketches {
public:
    /// Prints of another length than 1 (by more than this in the square) have no sketches.
    static constexpr float unitTolerance = 2e-5F;

    /// Uses tasks::threadCount(width) threads. Throws tasks::Cancelled.
    PrintSketches(std::span<const std::shared_ptr<const FeaturePrint>> prints, int width,
                  const std::stop_token& stop);

    /// Whether all prints have length 1; else the sketches promise nothing.
    bool valid() const { return valid_; }
    const PrintSketch& operator[](std::size_t print) const { return sketches_[print]; }

    /// The product that the sketches of two prints reach when `distance` reports that the prints are at most
    /// `radius` apart.
    static float leastProduct(float radius);

private:
    std::vector<PrintSketch> sketches_;
    bool valid_ = true;
};

/// How many sketches are compared with a block at once.
inline constexpr std::size_t sketchTile = 4;

/// Bit i of masks[tile · b + t] tells whether the product of *sketches[t] and sketch i of blocks[b] is at
/// least leastProducts[t]. Any thread; never allocates.
void compareSketches(const std::array<const PrintSketch*, sketchTile>& sketches,
                     std::span<const SketchBlock> blocks, const std::array<float, sketchTile>& leastProducts,
                     std::span<std::uint16_t> masks) noexcept;

/// The scalar products of `print` with `axes`, and with itself in the last place.
PrintSketch projectPrint(const FeaturePrint& print,
                         std::span<const FeaturePrint, sketchLength - 1> axes) noexcept;

} // namespace lumisort::similarity
