#pragma once

#include "film/optics/Triple.h"

#include <cstddef>
#include <span>
#include <vector>

namespace lumisort::film {

/// The reflectance 0.5 z / sqrt(1 + z²) + 0.5 with z = c0 t² + c1 t + c2 at every wavelength, and the
/// evaluations (FitEvaluation) of several coefficient triples at once, with the widest vectors that the
/// processor has. Every lane does the additions and multiplications of the plain loop in its order, each
/// rounded by itself, so that a result depends neither on the processor nor on what the other lanes hold.
///
/// Coefficients stay below 1e5 (64 steps of at most 100), far from where z² would overflow.
class SigmoidKernel {
public:
    /// Triples that are evaluated together.
    static constexpr std::size_t lanes = 8;

    struct Candidates {
        alignas(64) double c[3][lanes] = {};
    };
    struct Evaluations {
        alignas(64) double rgb[3][lanes] = {};
        alignas(64) double derivatives[3][3][lanes] = {}; ///< by coefficient, then channel
    };

    /// For each wavelength what a reflectance of 1 adds to the display colour, and its t.
    SigmoidKernel(std::vector<LinearRgb> weights, std::span<const double> t);

    void evaluate(const Candidates& candidates, Evaluations& evaluations) const;

    /// The reflectance at every wavelength; `out` has one element for each, and nothing beyond it is touched.
    void reflectance(const Vector3& c, std::span<double> out) const;

private:
    std::vector<LinearRgb> weights_;
    std::vector<double> tSquared_; ///< padded to a multiple of `lanes`, as is t_
    std::vector<double> t_;
};

} // namespace lumisort::film
