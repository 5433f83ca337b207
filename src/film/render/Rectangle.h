#pragma once

#include <algorithm>

namespace lumisort::film {

/// A rectangle of whole pixels, y downward from the picture's first row.
struct Rectangle {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    constexpr int right() const { return x + width; }
    constexpr int bottom() const { return y + height; }

    /// This rectangle with `border` more pixels on each side, as far as they lie inside `bounds`.
    constexpr Rectangle grown(int border, const Rectangle& bounds) const {
        const int left = std::max(x - border, bounds.x), top = std::max(y - border, bounds.y);
        return {left, top, std::min(right() + border, bounds.right()) - left,
                std::min(bottom() + border, bounds.bottom()) - top};
    }

    constexpr bool contains(const Rectangle& other) const {
        return other.x >= x && other.y >= y && other.right() <= right() && other.bottom() <= bottom();
    }

    friend constexpr bool operator==(const Rectangle&, const Rectangle&) = default;
};

} // namespace lumisort::film
