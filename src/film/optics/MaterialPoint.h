#pragma once

#include <cstddef>
#include <vector>

namespace lumisort::film {

/// One sample of a material: x is a wavelength in nanometres or a base-10 log exposure in lux seconds,
/// y a spectral value or a density.
struct MaterialPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const MaterialPoint&, const MaterialPoint&) = default;
};

/// Throws MaterialCurveFailure for fewer than two points, then for a number that is not finite: the
/// two checks that come first for every kind of curve.
void requireFinitePoints(const std::vector<MaterialPoint>& points);

/// The index of the interval [lo, lo + 1] that contains x, which is within the points' span. An x equal
/// to a point's belongs to the interval that this point starts, except the last.
std::size_t intervalHolding(const std::vector<MaterialPoint>& points, double x);

} // namespace lumisort::film
