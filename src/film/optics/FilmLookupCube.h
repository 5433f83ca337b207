#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace lumisort::film {

/// Nodes on each axis of the film's cubes.
inline constexpr int cubeDimension = 33;

/// A three-dimensional lookup table over [0, 1]³: dimension³ nodes, node k of an axis at k / (dimension - 1).
/// A value.
///
/// Layout: four floats R, G, B, 1 for each node, blue slowest, then green, red fastest. Read as an
/// image, the nodes are an atlas of dimension² × dimension texels with one blue slice in each row.
class FilmLookupCube {
public:
    /// All nodes (0, 0, 0), to be filled slice by slice.
    explicit FilmLookupCube(int dimension);
    /// A dimension below 2 or data of another size than 4 · dimension³ floats stops the program.
    FilmLookupCube(std::vector<float> data, int dimension);

    int dimension() const { return dimension_; }
    std::span<const float> data() const { return data_; }
    /// The dimension² nodes of one blue index, to be written.
    std::span<float> slice(int b);

    /// The first three numbers of a node; each index from 0 to dimension - 1.
    std::array<float, 3> node(int r, int g, int b) const;

    friend bool operator==(const FilmLookupCube&, const FilmLookupCube&) = default;

private:
    std::vector<float> data_;
    int dimension_;
};

} // namespace lumisort::film
