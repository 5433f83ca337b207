#include "review/GridLayout.h"

#include <algorithm>

namespace lumisort::review {

GridLayout::GridLayout(const std::vector<std::size_t>& groupSizes, std::size_t columns)
    : columns_(std::max<std::size_t>(columns, 1)) {
    for (std::size_t group = 0; group < groupSizes.size(); ++group)
        for (std::size_t left = groupSizes[group]; left > 0;) {
            const auto length = std::min(left, columns_);
            rows_.push_back({group, size_, length});
            size_ += length;
            left -= length;
        }
}

std::size_t GridLayout::rowOf(std::size_t position) const {
    const auto after = std::ranges::upper_bound(rows_, position, {}, &Row::first);
    return static_cast<std::size_t>(after - rows_.begin()) - 1;
}

std::size_t GridLayout::moved(std::size_t position, std::ptrdiff_t rows) const {
    const auto from = rowOf(position);
    const auto column = position - rows_[from].first;
    const auto last = static_cast<std::ptrdiff_t>(rows_.size()) - 1;
    const auto to = std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(from) + rows, 0, last);
    const auto& row = rows_[static_cast<std::size_t>(to)];
    return row.first + std::min(column, row.length - 1);
}

} // namespace lumisort::review
