#include "film/optics/SampledSpectrum.h"

#include "film/optics/MaterialCurveError.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumisort::film {

SampledSpectrum::SampledSpectrum(std::vector<MaterialPoint> points, Outside outside)
    : points_(std::move(points)), outside_(outside) {
    requireFinitePoints(points_);
    if (std::ranges::any_of(points_, [](const MaterialPoint& point) { return point.y < 0; })) {
        throw MaterialCurveFailure(MaterialCurveError::negativeSpectrum);
    }
    const auto notIncreasing = [](const MaterialPoint& a, const MaterialPoint& b) { return b.x <= a.x; };
    if (std::ranges::adjacent_find(points_, notIncreasing) != points_.end()) {
        throw MaterialCurveFailure(MaterialCurveError::unordered);
    }
}

double SampledSpectrum::value(double wavelength) const {
    if (std::isnan(wavelength)) return 0;
    const bool holds = outside_ == Outside::holdEndpoint;
    if (wavelength < points_.front().x) return holds ? points_.front().y : 0;
    if (wavelength > points_.back().x) return holds ? points_.back().y : 0;
    const std::size_t lo = intervalHolding(points_, wavelength);
    const auto& [x0, y0] = points_[lo];
    const auto& [x1, y1] = points_[lo + 1];
    return std::max(y0 + (wavelength - x0) / (x1 - x0) * (y1 - y0), 0.0);
}

} // namespace lumisort::film
