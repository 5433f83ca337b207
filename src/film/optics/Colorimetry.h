#pragma once

#include "film/optics/Matrix3.h"

namespace lumisort::film {

/// The share of light that passes a density: 10^-density, and all of it where the density is negative.
double transmission(double density);

/// The spectrum of a black body at a temperature in kelvin, wavelength in nanometres. Planck's law
/// without its constant factor, which cancels wherever a spectrum is normalised.
double blackbody(double wavelengthNM, double kelvin);

/// The CIE 1931 2° colour-matching functions as sums of two-sided Gaussians (Wyman, Sloan and Shirley,
/// Journal of Computer Graphics Techniques 2(2), 2013): X, Y, Z at a wavelength in nanometres. From 380 to
/// 780 nm they stay within 0.0140, 0.0080 and 0.0222 of the tabulated functions, whose peaks are 1.06, 1
/// and 1.78.
Xyz colourMatching1931(double wavelengthNM);

/// Bradford adaptation of a colour from a source white to D65.
Xyz adaptToD65(const Xyz& xyz, const Xyz& sourceWhite);

/// Colours under D65.
inline constexpr ColourMatrix<LinearRgb, Xyz> linearRgbFromXyz{{Vector3{3.2404542, -1.5371385, -0.4985314},
                                                                Vector3{-0.969266, 1.8760108, 0.041556},
                                                                Vector3{0.0556434, -0.2040259, 1.0572252}}};

/// The luminance of linear sRGB; a panchromatic film weighs its layers alike.
inline constexpr Vector3 luminanceWeights{0.2126, 0.7152, 0.0722};

} // namespace lumisort::film
