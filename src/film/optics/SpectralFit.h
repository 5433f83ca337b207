#pragma once

#include "film/optics/Matrix3.h"

#include <optional>

namespace lumisort::film {

/// A reflectance is a sigmoid of a quadratic in wavelength, 0.5 z / sqrt(1 + z²) + 0.5 with
/// z = c0 t² + c1 t + c2 and t from -1 at the first wavelength to 1 at the last. This is how one looks.
struct SigmoidView {
    Vector3 rgb;                        ///< the display RGB of the reflectance
    std::array<Vector3, 3> derivatives; ///< of that RGB by c0, c1 and c2
};

/// Solves the 3×3 system by Cramer's rule; none when it is (nearly) singular or the solution not finite.
std::optional<Vector3> solve(const Matrix3& rows, const Vector3& rightHandSide);

/// The search for the three coefficients whose reflectance shows a wanted display RGB: damped
/// Gauss-Newton steps (Levenberg-Marquardt) from the flat spectrum of the wanted mean.
///
/// The fit asks for one evaluation after the other, so that its owner can evaluate many fits at once:
///
///     SpectralFit fit(target, 64);
///     while (fit.advance(view of fit.candidate())) {}
class SpectralFit {
public:
    SpectralFit() = default;
    SpectralFit(const Vector3& target, int maximumIterations);

    /// The coefficients to look at next.
    const Vector3& candidate() const { return candidate_; }

    /// Takes the view of the candidate; true when there is a next one to look at.
    bool advance(const SigmoidView& view);

    /// The best coefficients so far and their display RGB.
    const Vector3& coefficients() const { return coefficients_; }
    const Vector3& rgb() const { return rgb_; }
    /// Passes begun; the one that finds that the target is reached counts.
    int iterations() const { return iterations_; }

private:
    void accept(const SigmoidView& view, double error);
    bool proposeStep();

    Vector3 target_;
    int maximumIterations_ = 0;
    int iterations_ = 0;
    bool started_ = false;
    double damping_ = 1e-5;
    Vector3 candidate_;
    Vector3 coefficients_;
    Vector3 rgb_;
    double error_ = 0; ///< sum of squares
    Matrix3 normal_;   ///< JᵀJ
    Vector3 gradient_; ///< Jᵀ(target - rgb)
};

} // namespace lumisort::film
