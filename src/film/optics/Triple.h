#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace lumisort::film {

/// Three numbers in the order red, green, blue; for a film the red-, green- and blue-sensitive layer with its
/// cyan, magenta and yellow dye. `Space` says what they measure: triples of different spaces do not mix, and
/// the ways from one space to another are a ColourMatrix, the functions of the spectral model and the lookup
/// tables.
template <class Space>
struct Triple {
    std::array<double, 3> v{};

    static constexpr Triple filled(double value) { return {value, value, value}; }

    constexpr double& operator[](std::size_t i) { return v[i]; }
    constexpr const double& operator[](std::size_t i) const { return v[i]; }

    friend constexpr bool operator==(const Triple&, const Triple&) = default;

    friend constexpr Triple operator+(const Triple& a, const Triple& b) {
        return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
    }
    friend constexpr Triple operator-(const Triple& a, const Triple& b) {
        return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
    }
    friend constexpr Triple operator*(const Triple& a, double s) { return {a[0] * s, a[1] * s, a[2] * s}; }
    friend constexpr Triple operator/(const Triple& a, double s) { return {a[0] / s, a[1] / s, a[2] / s}; }
    constexpr Triple& operator+=(const Triple& b) { return *this = *this + b; }
};

/// Three plain numbers: factors, shares, radii, coefficients.
using Vector3 = Triple<struct PlainSpace>;

/// Linear light for the primaries and the white of sRGB; white is 1.
using LinearRgb = Triple<struct LinearRgbSpace>;
/// CIE 1931 tristimulus values; the luminance of white is 1.
using Xyz = Triple<struct XyzSpace>;
/// Exposures of the film's layers relative to that of a perfect white; mid-grey is 0.18.
using Exposure = Triple<struct ExposureSpace>;
/// Developed densities (log10) of the film's layers above its base.
using Density = Triple<struct DensitySpace>;
/// The shares of the printing lamp's light that the paper's layers receive through a negative.
using Transmission = Triple<struct TransmissionSpace>;

/// Channel by channel.
template <class Space>
constexpr Triple<Space> operator*(const Triple<Space>& a, const Vector3& b) {
    return {a[0] * b[0], a[1] * b[1], a[2] * b[2]};
}

/// Channel by channel.
template <class Space>
constexpr Triple<Space> operator/(const Triple<Space>& a, const Vector3& b) {
    return {a[0] / b[0], a[1] / b[1], a[2] / b[2]};
}

template <class Space>
constexpr double sum(const Triple<Space>& a) {
    return a[0] + a[1] + a[2];
}

template <class A, class B>
constexpr double dot(const Triple<A>& a, const Triple<B>& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

constexpr Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

template <class Space>
constexpr double largest(const Triple<Space>& a) {
    return std::max({a[0], a[1], a[2]});
}

template <class Space>
double largestMagnitude(const Triple<Space>& a) {
    return std::max({std::abs(a[0]), std::abs(a[1]), std::abs(a[2])});
}

template <class Space>
bool isFinite(const Triple<Space>& a) {
    return std::isfinite(a[0]) && std::isfinite(a[1]) && std::isfinite(a[2]);
}

} // namespace lumisort::film
