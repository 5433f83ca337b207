#include "film/render/GaussLegendre.h"

#include <cmath>
#include <numbers>

namespace lumisort::film {

namespace {

struct Legendre {
    double value = 0;
    double derivative = 0;
};

Legendre legendre(int degree, double x) {
    double previous = 1, value = x;
    for (int n = 2; n <= degree; ++n) {
        const double next = ((2 * n - 1) * x * value - (n - 1) * previous) / n;
        previous = value;
        value = next;
    }
    return {value, degree * (x * value - previous) / (x * x - 1)};
}

} // namespace

std::vector<QuadratureNode> gaussLegendre(int points) {
    std::vector<QuadratureNode> nodes;
    for (int i = 0; i < points; ++i) {
        double x = std::cos(std::numbers::pi * (i + 0.75) / (points + 0.5));
        for (int iteration = 0; iteration < 16; ++iteration) {
            const auto p = legendre(points, x);
            const double step = p.value / p.derivative;
            x -= step;
            if (std::abs(step) < 1e-14) break;
        }
        const double slope = legendre(points, x).derivative;
        // The weight on [-1, 1] is 2 / ((1 - x²) P'²); half of it on [0, 1].
        nodes.push_back({(x + 1) / 2, 1 / ((1 - x * x) * slope * slope)});
    }
    return nodes;
}

} // namespace lumisort::film
