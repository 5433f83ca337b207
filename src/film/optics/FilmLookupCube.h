#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace lumisort::film {

/// A function of three numbers between 0 and 1, known at dimension³ nodes: node k of an axis stands for
/// k / (dimension - 1). A value; constant after construction.
///
/// Layout: four floats R, G, B, 1 for each node, blue slowest, then green, red fastest. Read as an
/// image, the nodes are an atlas of dimension² × dimension texels with one blue slice in each row.
class FilmLookupCube {
public:
    /// A dimension below 2 or data of another size than 4 · dimension³ floats stops the program.
    FilmLookupCube(std::vector<float> data, int dimension);

    int dimension() const { return dimension_; }
    std::span<const float> data() const { return data_; }

    /// The first three numbers of a node; each index from 0 to dimension - 1.
    std::array<float, 3> node(int r, int g, int b) const;

    friend bool operator==(const FilmLookupCube&, const FilmLookupCube&) = default;

private:
    std::vector<float> data_;
    int dimension_;
};

} // namespace lumisort::film
