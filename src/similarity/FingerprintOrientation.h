#pragma once

#include "platform/images/Orientation.h"

#include <array>
#include <cstddef>

namespace lumisort::similarity {

using images::Orientation;

/// The order in which a fingerprint lists the hashes of its photo in the eight orientations.
inline constexpr std::array hashOrder{
    Orientation::unchanged,          Orientation::quarterTurnClockwise,
    Orientation::halfTurn,           Orientation::quarterTurnCounterClockwise,
    Orientation::mirrorLeftRight,    Orientation::mirrorTopBottom,
    Orientation::mirrorMainDiagonal, Orientation::mirrorAntiDiagonal};

inline constexpr std::size_t orientationCount = hashOrder.size();

/// A cell of a square grid: row from the top, column from the left.
struct GridCell {
    int y = 0;
    int x = 0;

    friend bool operator==(const GridCell&, const GridCell&) = default;
};

/// The cell of the untransformed grid of side `side` that supplies `cell` of the transformed one.
constexpr GridCell sourceCell(Orientation orientation, GridCell cell, int side) {
    const auto [y, x] = cell;
    const int last = side - 1;
    switch (orientation) {
    case Orientation::unchanged:
        break;
    case Orientation::quarterTurnClockwise:
        return {last - x, y};
    case Orientation::halfTurn:
        return {last - y, last - x};
    case Orientation::quarterTurnCounterClockwise:
        return {x, last - y};
    case Orientation::mirrorLeftRight:
        return {y, last - x};
    case Orientation::mirrorTopBottom:
        return {last - y, x};
    case Orientation::mirrorMainDiagonal:
        return {x, y};
    case Orientation::mirrorAntiDiagonal:
        return {last - x, last - y};
    }
    return cell;
}

/// Whether the cosine transform's coefficient at vertical frequency `row` and horizontal frequency `column`
/// of the transformed image has the opposite sign of its source. Reversing an axis negates the odd
/// frequencies along it, because cos(u·(2(N−1−x) + 1)·π/2N) = (−1)^u · cos(u·(2x + 1)·π/2N).
constexpr bool negatesCoefficient(Orientation orientation, int row, int column) {
    const auto odd = [](int frequency) { return frequency % 2 != 0; };
    switch (orientation) {
    case Orientation::unchanged:
    case Orientation::mirrorMainDiagonal:
        return false;
    case Orientation::quarterTurnClockwise:
    case Orientation::mirrorLeftRight:
        return odd(column);
    case Orientation::quarterTurnCounterClockwise:
    case Orientation::mirrorTopBottom:
        return odd(row);
    case Orientation::halfTurn:
    case Orientation::mirrorAntiDiagonal:
        return odd(row + column);
    }
    return false;
}

} // namespace lumisort::similarity
