#pragma once

#include <array>
#include <cstddef>

namespace lumisort::similarity {

/// The eight symmetries of the square, in the order in which a fingerprint lists its hashes.
enum class FingerprintOrientation {
    unchanged,
    quarterTurnClockwise,
    halfTurn,
    quarterTurnCounterClockwise,
    mirrorLeftRight,
    mirrorTopBottom,
    mirrorMainDiagonal,
    mirrorAntiDiagonal,
};

inline constexpr std::size_t orientationCount = 8;

/// Whether width and height change places.
constexpr bool swapsSides(FingerprintOrientation orientation) {
    switch (orientation) {
    case FingerprintOrientation::quarterTurnClockwise:
    case FingerprintOrientation::quarterTurnCounterClockwise:
    case FingerprintOrientation::mirrorMainDiagonal:
    case FingerprintOrientation::mirrorAntiDiagonal:
        return true;
    default:
        return false;
    }
}

/// A cell of a square grid: row from the top, column from the left.
struct GridCell {
    int y = 0;
    int x = 0;

    friend bool operator==(const GridCell&, const GridCell&) = default;
};

/// The cell of the untransformed grid of side `side` that supplies `cell` of the transformed one.
constexpr GridCell sourceCell(FingerprintOrientation orientation, GridCell cell, int side) {
    const auto [y, x] = cell;
    const int last = side - 1;
    switch (orientation) {
    case FingerprintOrientation::unchanged:
        break;
    case FingerprintOrientation::quarterTurnClockwise:
        return {last - x, y};
    case FingerprintOrientation::halfTurn:
        return {last - y, last - x};
    case FingerprintOrientation::quarterTurnCounterClockwise:
        return {x, last - y};
    case FingerprintOrientation::mirrorLeftRight:
        return {y, last - x};
    case FingerprintOrientation::mirrorTopBottom:
        return {last - y, x};
    case FingerprintOrientation::mirrorMainDiagonal:
        return {x, y};
    case FingerprintOrientation::mirrorAntiDiagonal:
        return {last - x, last - y};
    }
    return cell;
}

/// Whether the cosine transform's coefficient at vertical frequency `row` and horizontal frequency `column`
/// of the transformed image has the opposite sign of its source. Reversing an axis negates the odd
/// frequencies along it, because cos(u·(2(N−1−x) + 1)·π/2N) = (−1)^u · cos(u·(2x + 1)·π/2N).
constexpr bool negatesCoefficient(FingerprintOrientation orientation, int row, int column) {
    const auto odd = [](int frequency) { return frequency % 2 != 0; };
    switch (orientation) {
    case FingerprintOrientation::unchanged:
    case FingerprintOrientation::mirrorMainDiagonal:
        return false;
    case FingerprintOrientation::quarterTurnClockwise:
    case FingerprintOrientation::mirrorLeftRight:
        return odd(column);
    case FingerprintOrientation::quarterTurnCounterClockwise:
    case FingerprintOrientation::mirrorTopBottom:
        return odd(row);
    case FingerprintOrientation::halfTurn:
    case FingerprintOrientation::mirrorAntiDiagonal:
        return odd(row + column);
    }
    return false;
}

} // namespace lumisort::similarity
