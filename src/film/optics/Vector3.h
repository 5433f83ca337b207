#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace lumisort::film {

/// Three numbers in the order red, green, blue (cyan, magenta, yellow for dyes; X, Y, Z for observers).
struct Vector3 {
    std::array<double, 3> v{};

    static constexpr Vector3 filled(double value) { return {value, value, value}; }

    constexpr double& operator[](std::size_t i) { return v[i]; }
    constexpr const double& operator[](std::size_t i) const { return v[i]; }

    friend constexpr bool operator==(const Vector3&, const Vector3&) = default;

    friend constexpr Vector3 operator+(const Vector3& a, const Vector3& b) {
        return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
    }
    friend constexpr Vector3 operator-(const Vector3& a, const Vector3& b) {
        return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
    }
    /// Channel by channel.
    friend constexpr Vector3 operator*(const Vector3& a, const Vector3& b) {
        return {a[0] * b[0], a[1] * b[1], a[2] * b[2]};
    }
    /// Channel by channel.
    friend constexpr Vector3 operator/(const Vector3& a, const Vector3& b) {
        return {a[0] / b[0], a[1] / b[1], a[2] / b[2]};
    }
    friend constexpr Vector3 operator*(const Vector3& a, double s) { return {a[0] * s, a[1] * s, a[2] * s}; }
    friend constexpr Vector3 operator/(const Vector3& a, double s) { return {a[0] / s, a[1] / s, a[2] / s}; }
    constexpr Vector3& operator+=(const Vector3& b) { return *this = *this + b; }
};

constexpr double sum(const Vector3& a) {
    return a[0] + a[1] + a[2];
}

constexpr double dot(const Vector3& a, const Vector3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

constexpr Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

constexpr double largest(const Vector3& a) {
    return std::max({a[0], a[1], a[2]});
}

inline double largestMagnitude(const Vector3& a) {
    return std::max({std::abs(a[0]), std::abs(a[1]), std::abs(a[2])});
}

inline bool isFinite(const Vector3& a) {
    return std::isfinite(a[0]) && std::isfinite(a[1]) && std::isfinite(a[2]);
}

} // namespace lumisort::film
