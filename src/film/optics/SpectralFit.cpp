#include "film/optics/SpectralFit.h"

#include <algorithm>
#include <cmath>

namespace lumisort::film {
namespace {

constexpr double largestDamping = 1e12;
constexpr double smallestDamping = 1e-12;
constexpr double reachedError = 1e-8; ///< per channel
constexpr double longestStep = 100;   ///< per coefficient

} // namespace

std::optional<Vector3> solve(const Matrix3& rows, const Vector3& b) {
    const Vector3 c0 = cross(rows[1], rows[2]);
    const double d = dot(rows[0], c0);
    if (!std::isfinite(d) || std::abs(d) < 1e-30) return std::nullopt;
    const Vector3 x = (c0 * b[0] + cross(rows[2], rows[0]) * b[1] + cross(rows[0], rows[1]) * b[2]) / d;
    if (!isFinite(x)) return std::nullopt;
    return x;
}

SpectralFit::SpectralFit(const LinearRgb& target, int maximumIterations)
    : target_(target), maximumIterations_(maximumIterations) {
    const double mean = std::clamp(sum(target) / 3, 0.01, 0.49);
    candidate_ = {0, 0, (2 * mean - 1) / std::sqrt(4 * mean * (1 - mean))};
}

bool SpectralFit::advance(const FitEvaluation& evaluation) {
    const LinearRgb residual = evaluation.rgb - target_;
    const double error = dot(residual, residual);
    if (!started_) {
        started_ = true;
        accept(evaluation, error);
    } else if (std::isfinite(error) && error < error_) {
        accept(evaluation, error);
        damping_ = std::max(damping_ / 3, smallestDamping);
    } else {
        damping_ *= 8;
        if (damping_ > largestDamping) return false;
    }
    return proposeStep();
}

void SpectralFit::accept(const FitEvaluation& evaluation, double error) {
    coefficients_ = candidate_;
    rgb_ = evaluation.rgb;
    error_ = error;
    const LinearRgb residual = target_ - rgb_;
    for (std::size_t k = 0; k < 3; ++k) {
        for (std::size_t l = 0; l < 3; ++l)
            normal_[k][l] = dot(evaluation.derivatives[k], evaluation.derivatives[l]);
        gradient_[k] = dot(evaluation.derivatives[k], residual);
    }
}

bool SpectralFit::proposeStep() {
    while (iterations_ < maximumIterations_) {
        ++iterations_;
        if (largestMagnitude(target_ - rgb_) <= reachedError) return false;

        Matrix3 damped = normal_;
        for (std::size_t k = 0; k < 3; ++k) damped[k][k] += damping_ * std::max(damped[k][k], 1e-6);
        if (const auto step = solve(damped, gradient_)) {
            const double length = largestMagnitude(*step);
            candidate_ = coefficients_ + (length > longestStep ? *step * (longestStep / length) : *step);
            return true;
        }
        damping_ *= 10;
        if (damping_ > largestDamping) return false;
    }
    return false;
}

} // namespace lumisort::film
