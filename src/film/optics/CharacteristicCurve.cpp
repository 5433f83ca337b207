#include "film/optics/CharacteristicCurve.h"

#include <cmath>

namespace lumisort::film {
namespace {

double lowest(const SigmoidCurve& curve) {
    return curve.minimum;
}
double lowest(const MonotoneCurve& curve) {
    return curve.points().front().y;
}
double range(const SigmoidCurve& curve) {
    return curve.range;
}
double range(const MonotoneCurve& curve) {
    return curve.points().back().y - curve.points().front().y;
}

} // namespace

double SigmoidCurve::density(double logExposure) const {
    return minimum + range / (1 + std::exp(-slope * logExposure));
}

double SigmoidCurve::logExposure(double density) const {
    const double share = (density - minimum) / range;
    return std::log(share / (1 - share)) / slope;
}

double density(const CharacteristicCurve& curve, double logExposure) {
    return std::visit([&](const auto& form) { return form.density(logExposure); }, curve);
}

double logExposure(const CharacteristicCurve& curve, double density) {
    return std::visit([&](const auto& form) { return form.logExposure(density); }, curve);
}

double lowestDensity(const CharacteristicCurve& curve) {
    return std::visit([](const auto& form) { return lowest(form); }, curve);
}

double densityRange(const CharacteristicCurve& curve) {
    return std::visit([](const auto& form) { return range(form); }, curve);
}

} // namespace lumisort::film
