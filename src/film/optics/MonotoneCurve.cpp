#include "film/optics/MonotoneCurve.h"

#include "film/optics/MaterialCurveError.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumisort::film {
namespace {

// The slope at an end from the two nearest segments, the nearer first, kept within what leaves the end
// segment monotone.
double endTangent(double h0, double h1, double d0, double d1) {
    const double tangent = ((2 * h0 + h1) * d0 - h0 * d1) / (h0 + h1);
    return std::min(std::max(tangent, 0.0), 3 * d0);
}

std::vector<double> monotoneTangents(const std::vector<MaterialPoint>& points) {
    const std::size_t n = points.size();
    std::vector<double> h(n - 1);
    std::vector<double> d(n - 1);
    for (std::size_t k = 0; k + 1 < n; ++k) {
        h[k] = points[k + 1].x - points[k].x;
        d[k] = (points[k + 1].y - points[k].y) / h[k];
    }
    if (n == 2) return {d[0], d[0]};

    std::vector<double> tangents(n, 0.0);
    for (std::size_t k = 0; k + 2 < n; ++k) {
        if (!(d[k] > 0 && d[k + 1] > 0)) continue; // flat beside a flat segment
        const double wa = 2 * h[k + 1] + h[k];
        const double wb = 2 * h[k] + h[k + 1];
        tangents[k + 1] = (wa + wb) / (wa / d[k] + wb / d[k + 1]);
    }
    tangents.front() = endTangent(h[0], h[1], d[0], d[1]);
    tangents.back() = endTangent(h[n - 2], h[n - 3], d[n - 2], d[n - 3]);
    return tangents;
}

} // namespace

MonotoneCurve::MonotoneCurve(std::vector<MaterialPoint> points) : points_(std::move(points)) {
    requireFinitePoints(points_);
    for (std::size_t i = 0; i + 1 < points_.size(); ++i) {
        if (!(points_[i].x < points_[i + 1].x)) throw MaterialCurveFailure(MaterialCurveError::unordered);
        if (points_[i].y > points_[i + 1].y) throw MaterialCurveFailure(MaterialCurveError::decreasing);
    }
    tangents_ = monotoneTangents(points_);
}

double MonotoneCurve::density(double x) const {
    if (std::isnan(x) || x <= points_.front().x) return points_.front().y;
    if (x >= points_.back().x) return points_.back().y;
    const std::size_t lo = intervalHolding(points_, x);
    const auto& [x0, y0] = points_[lo];
    const auto& [x1, y1] = points_[lo + 1];
    const double h = x1 - x0;
    const double t = (x - x0) / h;
    const double t2 = t * t;
    const double t3 = t2 * t;
    const double v = y0 * (2 * t3 - 3 * t2 + 1) + h * tangents_[lo] * (t3 - 2 * t2 + t) +
                     y1 * (3 * t2 - 2 * t3) + h * tangents_[lo + 1] * (t3 - t2);
    return std::min(std::max(v, y0), y1);
}

double MonotoneCurve::logExposure(double y) const {
    if (std::isnan(y) || y <= points_.front().y) return points_.front().x;
    if (y > points_.back().y) return points_.back().x;
    const auto exact = std::ranges::find(points_, y, &MaterialPoint::y);
    if (exact != points_.end()) return exact->x;

    double lo = points_.front().x;
    double hi = points_.back().x;
    // Every round halves the interval: 64 reach the spacing of doubles from any span of a film.
    for (int round = 0; round < 64; ++round) {
        const double mid = (hi + lo) * 0.5;
        (density(mid) < y ? lo : hi) = mid;
    }
    return hi;
}

} // namespace lumisort::film
