#pragma once

#include <cstddef>
#include <vector>

namespace lumisort::review {

/// Photos in rows of `columns`, each group beginning a row of its own; the grid of a library is one group.
/// Positions count through all groups. A pure value.
class GridLayout {
public:
    GridLayout() = default;
    /// Sizes of the groups, in order; columns at least 1.
    GridLayout(const std::vector<std::size_t>& groupSizes, std::size_t columns);

    struct Row {
        std::size_t group;  ///< which group, from 0
        std::size_t first;  ///< position of its first photo
        std::size_t length; ///< 1 … columns
    };

    std::size_t size() const { return size_; }
    std::size_t columns() const { return columns_; }
    const std::vector<Row>& rows() const { return rows_; }
    /// The row that holds a position; `position` < size().
    std::size_t rowOf(std::size_t position) const;
    /// The position `rows` further down (negative: up) in the same column, or in the last one where the row
    /// is shorter; stays within the first and the last row.
    std::size_t moved(std::size_t position, std::ptrdiff_t rows) const;

private:
    std::vector<Row> rows_;
    std::size_t size_ = 0, columns_ = 1;
};

} // namespace lumisort::review
