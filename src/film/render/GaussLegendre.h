#pragma once

#include <vector>

namespace lumisort::film {

struct QuadratureNode {
    double x = 0;
    double weight = 0;
};

/// The Gauss–Legendre rule of `points` nodes on [0, 1]: exact for polynomials up to degree 2 · points - 1.
std::vector<QuadratureNode> gaussLegendre(int points);

} // namespace lumisort::film
