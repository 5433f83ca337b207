#pragma once

#include "film/optics/MaterialPoint.h"

#include <vector>

namespace lumisort::film {

/// A cubic through its points that never decreases and never overshoots them: Hermite segments whose
/// tangents are weighted harmonic means of the neighbouring slopes (Fritsch and Butland, SIAM J. Sci.
/// Stat. Comput. 5, 1984). Beyond its ends it holds the end values.
class MonotoneCurve {
public:
    /// At least two points, x strictly increasing, y never decreasing, all finite. Throws
    /// MaterialCurveFailure: tooFewPoints, nonfinite, then pair by pair unordered or decreasing.
    explicit MonotoneCurve(std::vector<MaterialPoint> points);

    const std::vector<MaterialPoint>& points() const { return points_; }
    /// The slope at every point.
    const std::vector<double>& tangents() const { return tangents_; }

    /// The first y for an x that is no number.
    double value(double x) const;

    /// An x with value(x) = y; the nearer end for a y beyond the curve, the first x for a y that is no
    /// number. A point's own y gives that point's x exactly; of equal ones the first.
    double inverse(double y) const;

    friend bool operator==(const MonotoneCurve&, const MonotoneCurve&) = default;

private:
    std::vector<MaterialPoint> points_;
    std::vector<double> tangents_;
};

} // namespace lumisort::film
