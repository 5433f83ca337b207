#pragma once

#include "film/optics/Matrix3.h"

#include <optional>

namespace lumisort::film {

/// The display colour of one coefficient triple and its Jacobian. The triple stands for the reflectance
/// 0.5 z / sqrt(1 + z²) + 0.5 with z = c0 t² + c1 t + c2, t from -1 at the first wavelength to 1 at the last.
struct FitEvaluation {
    LinearRgb rgb;
    std::array<LinearRgb, 3> derivatives; ///< of rgb by c0, c1 and c2
};

/// Solves the 3×3 system by Cramer's rule; none when the determinant is below 1e-30 in magnitude or the
/// solution not finite.
std::optional<Vector3> solve(const Matrix3& rows, const Vector3& rightHandSide);

/// The search for the three coefficients whose reflectance shows a wanted display colour: damped
/// Gauss-Newton steps (Levenberg-Marquardt) from the flat spectrum of the wanted mean.
///
/// The fit asks for one evaluation after the other, so that its owner can evaluate many fits at once:
///
///     SpectralFit fit(target, 64);
///     while (fit.advance(evaluation of fit.candidate())) {}
class SpectralFit {
public:
    SpectralFit() = default;
    SpectralFit(const LinearRgb& target, int maximumIterations);

    /// The coefficients to evaluate next.
    const Vector3& candidate() const { return candidate_; }

    /// Takes the evaluation of the candidate; true when there is a next one to evaluate.
    bool advance(const FitEvaluation& evaluation);

    /// The best coefficients so far and their display colour.
    const Vector3& coefficients() const { return coefficients_; }
    const LinearRgb& rgb() const { return rgb_; }
    /// Passes begun; the one that finds that the target is reached counts.
    int iterations() const { return iterations_; }

private:
    void accept(const FitEvaluation& evaluation, double error);
    bool proposeStep();

    LinearRgb target_;
    int maximumIterations_ = 0;
    int iterations_ = 0;
    bool started_ = false;
    double damping_ = 1e-5;
    Vector3 candidate_;
    Vector3 coefficients_;
    LinearRgb rgb_;
    double error_ = 0; ///< sum of squares
    Matrix3 normal_;   ///< JᵀJ
    Vector3 gradient_; ///< Jᵀ(target - rgb)
};

} // namespace lumisort::film
