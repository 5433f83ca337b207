#pragma once

#include "film/optics/Triple.h"

#include <cstddef>
#include <vector>

namespace lumisort::film {

/// A sum of plane waves over a picture, split for each layer into tables over columns and factors of rows:
/// C cos(ax + by) + S sin(ax + by) = cos(ax) (C cos(by) + S sin(by)) + sin(ax) (S cos(by) - C sin(by)).
///
/// Angles reach millions of radians, so both are computed in double precision and rounded at the end: the
/// field is as exact in the last column of a large picture as in the first.
struct PlaneWaves {
    /// Angular frequencies in radians per pixel and amplitudes of one wave in each layer.
    struct Wave {
        Vector3 x;
        Vector3 y;
        Vector3 cosine;
        Vector3 sine;
    };

    /// Pixel (column, row) is sampled at its centre, y upward from the picture's lower edge.
    PlaneWaves(const std::vector<Wave>& waves, int layers, int width, int height);

    int layers;
    int terms;           ///< 2 for each wave
    int columnCount = 0; ///< width and slack for vectors that run past it
    int rowCount = 0;
    std::vector<float> columns; ///< [layer][term][column]
    std::vector<float> rows;    ///< [layer][row][term]
};

} // namespace lumisort::film
