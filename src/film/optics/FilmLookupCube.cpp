#include "film/optics/FilmLookupCube.h"

#include "film/optics/Invariant.h"

#include <algorithm>
#include <utility>

namespace lumisort::film {
namespace {

std::vector<float> blank(int dimension) {
    const auto n = static_cast<std::size_t>(std::max(dimension, 0));
    std::vector<float> data(n * n * n * 4);
    for (std::size_t alpha = 3; alpha < data.size(); alpha += 4) data[alpha] = 1;
    return data;
}

} // namespace

FilmLookupCube::FilmLookupCube(int dimension) : FilmLookupCube(blank(dimension), dimension) {}

FilmLookupCube::FilmLookupCube(std::vector<float> data, int dimension)
    : data_(std::move(data)), dimension_(dimension) {
    require(dimension >= 2, "a lookup cube has fewer than two nodes on an axis");
    const auto n = static_cast<std::size_t>(dimension);
    require(data_.size() == n * n * n * 4, "a lookup cube's data do not fit its dimension");
}

std::span<float> FilmLookupCube::slice(int b) {
    const auto size = static_cast<std::size_t>(dimension_ * dimension_) * 4;
    return std::span(data_).subspan(size * static_cast<std::size_t>(b), size);
}

std::array<float, 3> FilmLookupCube::node(int r, int g, int b) const {
    const std::size_t at = static_cast<std::size_t>((b * dimension_ + g) * dimension_ + r) * 4;
    return {data_[at], data_[at + 1], data_[at + 2]};
}

} // namespace lumisort::film
