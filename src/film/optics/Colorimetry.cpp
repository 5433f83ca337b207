#include "film/optics/Colorimetry.h"

#include <cmath>

namespace lumisort::film {
namespace {

// A Gaussian with one inverse width below its centre and another above.
double twoSided(double wavelength, double centre, double inverseBelow, double inverseAbove) {
    const double x = (wavelength - centre) * (wavelength < centre ? inverseBelow : inverseAbove);
    return std::exp(-0.5 * (x * x));
}

constexpr Matrix3 bradford{Vector3{0.8951, 0.2664, -0.1614}, Vector3{-0.7502, 1.7135, 0.0367},
                           Vector3{0.0389, -0.0685, 1.0296}};
constexpr Matrix3 inverseBradford{Vector3{0.9869929, -0.1470543, 0.1599627},
                                  Vector3{0.4323053, 0.5183603, 0.0492912},
                                  Vector3{-0.0085287, 0.0400428, 0.9684867}};
// The cone response to D65 white.
constexpr Vector3 coneD65{0.941428535, 1.040417467, 1.089532651};

// Second radiation constant hc/k in micrometre kelvin.
constexpr double secondRadiationConstant = 14387.76877;

} // namespace

double transmission(double density) {
    return density < 0 ? 1.0 : std::pow(10.0, -density);
}

double blackbody(double wavelengthNM, double kelvin) {
    const double micrometres = wavelengthNM / 1000;
    return 1 / (std::pow(micrometres, 5) * std::expm1(secondRadiationConstant / (micrometres * kelvin)));
}

Xyz colourMatching1931(double wavelengthNM) {
    const auto s = [wavelengthNM](double centre, double below, double above) {
        return twoSided(wavelengthNM, centre, below, above);
    };
    return {1.056 * s(599.8, 0.0264, 0.0323) + 0.362 * s(442.0, 0.0624, 0.0374) -
                0.065 * s(501.1, 0.0490, 0.0382),
            0.821 * s(568.8, 0.0213, 0.0247) + 0.286 * s(530.9, 0.0613, 0.0322),
            1.217 * s(437.0, 0.0845, 0.0278) + 0.681 * s(459.0, 0.0385, 0.0725)};
}

Xyz adaptToD65(const Xyz& xyz, const Xyz& sourceWhite) {
    const Vector3 cones = bradford * Vector3{xyz.v};
    const Vector3 adapted = cones * coneD65 / (bradford * Vector3{sourceWhite.v});
    return {(inverseBradford * adapted).v};
}

} // namespace lumisort::film
