#pragma once

#include "film/optics/FilmSpectralModel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace lumisort::film::literal {

// The formulas as they are written, one number at a time: what the fast code must agree with.

struct Fit {
    std::vector<double> reflectance;
    int iterations = 0;
    LinearRgb rgb;
};

using Columns = std::array<std::array<double, 3>, 3>;

inline double determinant(const Columns& m) {
    return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
           m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
           m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

struct Search {
    Vector3 c;
    LinearRgb rgb;
    int iterations = 0;
    bool rejected = false, singular = false, shortened = false; ///< what happened on the way
};

/// The damped search for c with rgb = target, from (0, 0, start); `evaluate` gives rgb and its columns.
template <class Evaluate>
Search search(const Evaluate& evaluate, const LinearRgb& target, double start, int maximumIterations) {
    const auto squared = [&](const LinearRgb& rgb) { return dot(rgb - target, rgb - target); };
    Search s{.c = {0, 0, start}};
    Columns jacobian;
    s.rgb = evaluate(s.c, jacobian);
    double damping = 1e-5;
    while (s.iterations < maximumIterations && damping <= 1e12) {
        ++s.iterations;
        const LinearRgb residual = target - s.rgb;
        if (largestMagnitude(residual) <= 1e-8) break;
        Columns a;
        std::array<double, 3> b;
        for (std::size_t k = 0; k < 3; ++k) {
            const Vector3 column{jacobian[k]};
            for (std::size_t l = 0; l < 3; ++l) a[k][l] = dot(column, Vector3{jacobian[l]});
            a[k][k] += damping * std::max(a[k][k], 1e-6);
            b[k] = dot(column, residual);
        }
        const double d = determinant(a);
        if (!(std::abs(d) >= 1e-30)) {
            s.singular = true;
            damping *= 10;
            continue;
        }
        Vector3 step;
        for (std::size_t k = 0; k < 3; ++k) {
            Columns replaced = a;
            for (std::size_t row = 0; row < 3; ++row) replaced[row][k] = b[row];
            step[k] = determinant(replaced) / d;
        }
        if (const double length = largestMagnitude(step); length > 100) {
            s.shortened = true;
            step = step * (100 / length);
        }
        Columns candidateJacobian;
        const LinearRgb candidate = evaluate(s.c + step, candidateJacobian);
        if (squared(candidate) < squared(s.rgb)) {
            s.c = s.c + step;
            s.rgb = candidate;
            jacobian = candidateJacobian;
            damping = std::max(damping / 3, 1e-12);
        } else {
            s.rejected = true;
            damping *= 8;
        }
    }
    return s;
}

/// Where the search starts: the flat spectrum of the target's mean.
inline double flatStart(const LinearRgb& target) {
    const double mean = std::min(std::max((target[0] + target[1] + target[2]) / 3, 0.01), 0.49);
    return (2 * mean - 1) / std::sqrt(4 * mean * (1 - mean));
}

/// The fit of a sigmoid to a target that no channel of which exceeds 1/2.
inline Fit fit(const std::vector<LinearRgb>& weights, const LinearRgb& target, int maximumIterations) {
    std::vector<double> t;
    for (std::size_t i = 0; i < weights.size(); ++i)
        t.push_back(2.0 * double(i) / double(weights.size() - 1) - 1);
    const auto evaluate = [&](const Vector3& c, Columns& jacobian) {
        LinearRgb rgb;
        jacobian = {};
        for (std::size_t i = 0; i < weights.size(); ++i) {
            const double q[3] = {t[i] * t[i], t[i], 1};
            const double z = c[0] * q[0] + c[1] * q[1] + c[2];
            const double h = std::hypot(1, z);
            for (std::size_t channel = 0; channel < 3; ++channel) {
                rgb[channel] += weights[i][channel] * (0.5 * z / h + 0.5);
                for (std::size_t k = 0; k < 3; ++k) {
                    jacobian[k][channel] += weights[i][channel] * (0.5 / (h * h * h)) * q[k];
                }
            }
        }
        return rgb;
    };
    const Search found = search(evaluate, target, flatStart(target), maximumIterations);
    Fit result{{}, found.iterations, found.rgb};
    for (const double x : t) {
        const double z = found.c[0] * x * x + found.c[1] * x + found.c[2];
        result.reflectance.push_back(0.5 * z / std::hypot(1, z) + 0.5);
    }
    return result;
}

/// The display colour of a spectrum.
inline LinearRgb displayRGB(const FilmSpectralModel& model, const std::vector<double>& spectrum) {
    LinearRgb rgb;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) rgb += model.reflectionWeights[i] * spectrum[i];
    return rgb;
}

/// What the layers receive from a colour, whose largest channel is not 0.
inline Exposure layerExposure(const FilmSpectralModel& model, const LinearRgb& rgb) {
    const double peak = largest(rgb);
    const bool isWhite = rgb == LinearRgb::filled(peak);
    const std::vector<LinearRgb> weights(model.reflectionWeights.begin(), model.reflectionWeights.end());
    const std::vector<double> reflectance =
        isWhite ? std::vector<double>(81, 0.5) : fit(weights, rgb / peak / 2, 64).reflectance;
    Exposure exposure;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        for (std::size_t c = 0; c < 3; ++c) {
            exposure[c] += model.filmSensitivityWeights[i][c] * (2 * peak * reflectance[i]);
        }
    }
    if (model.stock.stock != FilmStock::mono400) return exposure;
    return Exposure::filled(0.2126 * exposure[0] + 0.7152 * exposure[1] + 0.0722 * exposure[2]);
}

/// The light that passes three dyes of the given densities and what is under them, as three channels see it.
template <class Seen>
Seen seenThrough(const Spectral<Vector3>& dyes, const Spectral<double>& base, const Spectral<Seen>& weights,
                 const Vector3& densities) {
    Seen seen;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        const double density =
            densities[0] * dyes[i][0] + densities[1] * dyes[i][1] + densities[2] * dyes[i][2] + base[i];
        seen += weights[i] * std::pow(10.0, -density);
    }
    return seen;
}

} // namespace lumisort::film::literal
