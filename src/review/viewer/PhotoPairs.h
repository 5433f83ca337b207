#pragma once

#include <cstdint>
#include <optional>

namespace lumisort::review {

/// Two positions in a group, `first` < `second`.
struct PhotoPair {
    std::int64_t first = 0, second = 1;

    friend bool operator==(const PhotoPair&, const PhotoPair&) = default;
};

/// How many pairs there are among `count` photos.
constexpr std::int64_t pairCount(std::int64_t count) {
    return count < 2 ? 0 : count * (count - 1) / 2;
}

/// Pairs in order: the first photo with each further one, then the second with each behind it, and so on.
constexpr std::int64_t pairIndex(std::int64_t count, PhotoPair pair) {
    return pair.first * (2 * count - pair.first - 1) / 2 + pair.second - pair.first - 1;
}

/// The pair at `index`; none outside 0 … pairCount(count) − 1.
constexpr std::optional<PhotoPair> pairAt(std::int64_t count, std::int64_t index) {
    if (index < 0 || index >= pairCount(count)) return std::nullopt;
    std::int64_t first = 0;
    for (; index >= count - 1 - first; ++first) index -= count - 1 - first;
    return PhotoPair{first, first + 1 + index};
}

} // namespace lumisort::review
