#pragma once

#include <array>
#include <cstddef>

namespace lumisort::film {

/// The one wavelength grid of all spectral work: 380 to 780 nm in steps of 5 nm, both ends included.
inline constexpr std::size_t spectralSampleCount = 81;

/// Grid wavelength i in nanometres.
constexpr double wavelengthNM(std::size_t i) {
    return 380.0 + 5.0 * static_cast<double>(i);
}

/// One value for every grid wavelength.
template <class T>
using Spectral = std::array<T, spectralSampleCount>;

/// The values of a function of the wavelength in nanometres.
template <class F>
auto sampled(const F& valueAt) {
    Spectral<decltype(valueAt(0.0))> values{};
    for (std::size_t i = 0; i < spectralSampleCount; ++i) values[i] = valueAt(wavelengthNM(i));
    return values;
}

template <class T>
T total(const Spectral<T>& values) {
    T result{};
    for (const T& value : values) result += value;
    return result;
}

} // namespace lumisort::film
