#pragma once

#include "film/optics/Triple.h"

namespace lumisort::film {

/// A 3×3 matrix by rows.
struct Matrix3 {
    std::array<Vector3, 3> rows{};

    constexpr Vector3& operator[](std::size_t row) { return rows[row]; }
    constexpr const Vector3& operator[](std::size_t row) const { return rows[row]; }

    friend constexpr bool operator==(const Matrix3&, const Matrix3&) = default;

    /// Matrix times column vector.
    friend constexpr Vector3 operator*(const Matrix3& m, const Vector3& x) {
        return {dot(m[0], x), dot(m[1], x), dot(m[2], x)};
    }
    /// Row vector times matrix.
    friend constexpr Vector3 operator*(const Vector3& x, const Matrix3& m) {
        return m[0] * x[0] + m[1] * x[1] + m[2] * x[2];
    }
    constexpr Matrix3& operator+=(const Matrix3& b) {
        for (std::size_t i = 0; i < 3; ++i) rows[i] += b[i];
        return *this;
    }
};

/// A linear map from one colour space to another.
template <class To, class From>
struct ColourMatrix {
    Matrix3 matrix;

    friend constexpr To operator*(const ColourMatrix& m, const From& x) {
        return {(m.matrix * Vector3{x.v}).v};
    }
    friend constexpr bool operator==(const ColourMatrix&, const ColourMatrix&) = default;
};

/// Column a times row b.
constexpr Matrix3 outer(const Vector3& a, const Vector3& b) {
    return {b * a[0], b * a[1], b * a[2]};
}

constexpr double determinant(const Matrix3& m) {
    return dot(m[0], cross(m[1], m[2]));
}

/// Cofactors over the determinant; the caller knows that the matrix is regular.
constexpr Matrix3 inverse(const Matrix3& m) {
    const Vector3 a = cross(m[1], m[2]);
    const Vector3 b = cross(m[2], m[0]);
    const Vector3 c = cross(m[0], m[1]);
    const double d = dot(m[0], a);
    return {Vector3{a[0], b[0], c[0]} / d, Vector3{a[1], b[1], c[1]} / d, Vector3{a[2], b[2], c[2]} / d};
}

} // namespace lumisort::film
