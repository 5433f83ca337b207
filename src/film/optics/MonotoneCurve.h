#pragma once

#include "film/optics/MaterialPoint.h"

#include <vector>

namespace lumisort::film {

/// A measured characteristic curve, base-10 log exposure to density: a cubic through its points that never
/// decreases and never overshoots them. Hermite segments whose tangents are weighted harmonic means of the
/// neighbouring slopes (Fritsch and Butland, SIAM J. Sci. Stat. Comput. 5, 1984). Beyond its ends it holds
/// the end values.
class MonotoneCurve {
public:
    /// At least two points, x strictly increasing, y never decreasing, all finite. Throws
    /// MaterialCurveFailure: tooFewPoints, nonfinite, then pair by pair unordered or decreasing.
    explicit MonotoneCurve(std::vector<MaterialPoint> points);

    const std::vector<MaterialPoint>& points() const { return points_; }
    /// The slope at every point.
    const std::vector<double>& tangents() const { return tangents_; }

    /// The y at a log exposure; the first y for NaN.
    double density(double logExposure) const;

    /// A log exposure at which density() is `density`: the nearer end for one beyond the curve, the first x
    /// for NaN. A point's own y gives that point's x exactly; of equal ones the first.
    double logExposure(double density) const;

    friend bool operator==(const MonotoneCurve&, const MonotoneCurve&) = default;

private:
    std::vector<MaterialPoint> points_;
    std::vector<double> tangents_;
};

} // namespace lumisort::film
