#include "film/optics/MaterialPoint.h"

#include "film/optics/MaterialCurveError.h"

#include <cmath>

namespace lumisort::film {

void requireFinitePoints(const std::vector<MaterialPoint>& points) {
    if (points.size() < 2) throw MaterialCurveFailure(MaterialCurveError::tooFewPoints);
    for (const auto& [x, y] : points) {
        if (!std::isfinite(x) || !std::isfinite(y)) throw MaterialCurveFailure(MaterialCurveError::nonfinite);
    }
}

std::size_t intervalHolding(const std::vector<MaterialPoint>& points, double x) {
    std::size_t lo = 0;
    std::size_t hi = points.size() - 1;
    while (hi - lo > 1) {
        const std::size_t mid = (lo + hi) / 2;
        (points[mid].x <= x ? lo : hi) = mid;
    }
    return lo;
}

} // namespace lumisort::film
