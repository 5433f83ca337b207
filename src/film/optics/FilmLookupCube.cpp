#include "film/optics/FilmLookupCube.h"

#include "film/optics/Invariant.h"

#include <utility>

namespace lumisort::film {

FilmLookupCube::FilmLookupCube(std::vector<float> data, int dimension)
    : data_(std::move(data)), dimension_(dimension) {
    require(dimension >= 2, "a lookup cube has fewer than two nodes on an axis");
    const auto n = static_cast<std::size_t>(dimension);
    require(data_.size() == n * n * n * 4, "a lookup cube's data do not fit its dimension");
}

std::array<float, 3> FilmLookupCube::node(int r, int g, int b) const {
    const std::size_t at = static_cast<std::size_t>((b * dimension_ + g) * dimension_ + r) * 4;
    return {data_[at], data_[at + 1], data_[at + 2]};
}

} // namespace lumisort::film
