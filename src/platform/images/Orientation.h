#pragma once

#include <cstdint>
#include <optional>

namespace lumisort::images {

/// One of the eight symmetries of a rectangle: what makes a stored image upright. The values are those of
/// EXIF (2.32, 4.6.4, tag 0x0112). Each is one movement: a turn, or a mirror image about the axis that is
/// named by what changes places.
enum class Orientation : std::uint8_t {
    unchanged = 1,
    mirrorLeftRight = 2,
    halfTurn = 3,
    mirrorTopBottom = 4,
    mirrorMainDiagonal = 5, ///< rows become columns
    quarterTurnClockwise = 6,
    mirrorAntiDiagonal = 7,
    quarterTurnCounterClockwise = 8,
};

/// The orientation of an EXIF value; none for values that EXIF does not know.
constexpr std::optional<Orientation> orientationOfExif(std::int64_t value) {
    if (value < 1 || value > 8) return std::nullopt;
    return static_cast<Orientation>(value);
}

/// Whether width and height change places.
constexpr bool swapsSides(Orientation orientation) {
    return orientation >= Orientation::mirrorMainDiagonal;
}

} // namespace lumisort::images
