#pragma once

#include "film/optics/MaterialPoint.h"

#include <vector>

namespace lumisort::film {

/// A spectrum interpolated linearly between a few wavelengths, in nanometres.
class SampledSpectrum {
public:
    /// The value beyond the first and the last point: nothing, or that of the nearer end.
    enum class Outside { zero, holdEndpoint };

    /// At least two points, wavelengths strictly increasing, all finite, no negative value. Throws
    /// MaterialCurveFailure: tooFewPoints, nonfinite, negativeSpectrum, unordered, checked in this order.
    SampledSpectrum(std::vector<MaterialPoint> points, Outside outside);

    const std::vector<MaterialPoint>& points() const { return points_; }
    Outside outside() const { return outside_; }

    /// Never negative; 0 for NaN. The end points are inside.
    double value(double wavelength) const;

    friend bool operator==(const SampledSpectrum&, const SampledSpectrum&) = default;

private:
    std::vector<MaterialPoint> points_;
    Outside outside_;
};

} // namespace lumisort::film
