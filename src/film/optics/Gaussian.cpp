#include "film/optics/Gaussian.h"

#include <cmath>

namespace lumisort::film {

double gaussian(double x, double centre, double sigma) {
    const double t = (x - centre) / sigma;
    return std::exp(-0.5 * (t * t));
}

Vector3 GaussianTriple::at(double wavelengthNM) const {
    Vector3 values;
    for (std::size_t c = 0; c < 3; ++c) values[c] = gaussian(wavelengthNM, centresNM[c], sigmasNM[c]);
    return values;
}

Vector3 GaussianTriple::sharesAt(double wavelengthNM, double floor) const {
    const Vector3 values = at(wavelengthNM);
    return Vector3::filled(floor) + values * (1 - 3 * floor) / sum(values);
}

} // namespace lumisort::film
