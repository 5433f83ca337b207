#include "film/render/GrainStatistics.h"

#include "film/render/GaussLegendre.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace lumisort::film {

namespace {

constexpr double pi = std::numbers::pi;

double sinc(double x) {
    return std::abs(x) < 1e-7 ? 1 - x * x / 6 : std::sin(x) / x;
}

/// The area that two discs of this radius share.
double overlap(double distance, double radius) {
    if (radius <= 0 || distance >= 2 * radius) return 0;
    return 2 * radius * radius * std::acos(distance / (2 * radius)) -
           distance / 2 * std::sqrt(4 * radius * radius - distance * distance);
}

/// A log-normal distribution of mean 1 within 4.5 standard deviations of the logarithm.
std::vector<GrainStatistics::Radius> logNormalRadii(double variation) {
    const double sigma = std::sqrt(std::log(1 + variation * variation));
    if (sigma < 1e-8) return {{1, 1}};
    std::vector<GrainStatistics::Radius> radii;
    double sum = 0;
    for (const auto& [t, weight] : gaussLegendre(24)) {
        const double z = 9 * (t - 0.5);
        radii.push_back(
            {std::exp(sigma * z - sigma * sigma / 2), 9 * weight * std::exp(-z * z / 2) / std::sqrt(2 * pi)});
        sum += radii.back().probability;
    }
    for (auto& radius : radii) radius.probability /= sum;
    return radii;
}

} // namespace

GrainStatistics::GrainStatistics(double coefficientOfVariation, int modeCount)
    : radii_(logNormalRadii(
          std::isfinite(coefficientOfVariation) ? std::clamp(coefficientOfVariation, 0.0, 0.65) : 0.35)) {
    for (const auto& [radius, probability] : radii_) {
        meanArea_ += probability * pi * radius * radius;
        maximumRadius_ = std::max(maximumRadius_, radius);
    }
    drawModes(std::clamp(modeCount, 16, 128));
}

double GrainStatistics::meanOverlap(double distance) const {
    double area = 0;
    for (const auto& [radius, probability] : radii_) area += probability * overlap(distance, radius);
    return area;
}

void GrainStatistics::drawModes(int count) {
    // The covariance at half coverage over distance, weighed for Simpson's rule in a Hankel transform of
    // order 0.
    constexpr int distances = 768, frequencies = 384;
    constexpr double frequencyStep = 0.09375; // radians per mean radius
    const double rate = std::numbers::ln2 / meanArea_;
    const double distanceStep = 2 * maximumRadius_ / distances;
    std::vector<double> terms;
    for (int k = 0; k <= distances; ++k) {
        const double distance = k * distanceStep;
        const double covariance = (std::exp(rate * meanOverlap(distance)) - 1) / 4;
        const double simpson = k == 0 || k == distances ? 1 : k % 2 == 1 ? 4 : 2;
        terms.push_back(distanceStep / 3 * simpson * distance * covariance);
    }
    // Radial power up to each frequency.
    std::vector<double> cumulative{0};
    double before = 0;
    for (int j = 1; j <= frequencies; ++j) {
        const double q = frequencyStep * j;
        double spectrum = 0;
        for (int k = 0; k <= distances; ++k)
            spectrum += terms[static_cast<std::size_t>(k)] * ::j0(q * k * distanceStep);
        const double power = std::max(0.0, q * spectrum);
        cumulative.push_back(cumulative.back() + 0.5 * frequencyStep * (before + power));
        before = power;
    }
    const double total = std::max(cumulative.back(), 1e-12);
    for (int i = 0; i < count; ++i) {
        const double target = total * (i + 0.5) / count;
        const auto found = std::ranges::lower_bound(cumulative, target) - cumulative.begin();
        const auto high = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(found, 1, frequencies));
        const double low = cumulative[high - 1];
        const double share = (target - low) / std::max(cumulative[high] - low, 1e-15);
        const double q = frequencyStep * (static_cast<double>(high - 1) + share);
        // Successive waves turn by the golden angle, so that their directions are spread evenly.
        const double angle = i * pi * 0.7639320225002102 + 0.371;
        modes_.push_back({q * std::cos(angle), q * std::sin(angle)});
    }
}

double GrainStatistics::pixelResponse(const Mode& mode, double footprint) {
    return sinc(footprint * mode.x / 2) * sinc(footprint * mode.y / 2);
}

double GrainStatistics::spectralPixelVariance(double footprint) const {
    double sum = 0;
    for (const auto& mode : modes_) {
        const double response = pixelResponse(mode, footprint);
        sum += response * response;
    }
    return sum / static_cast<double>(modes_.size());
}

double GrainStatistics::coverageDeviation(double coverage, double footprint) const {
    if (!(coverage > 0) || coverage >= 1) return 0;
    const double pointVariance = coverage * (1 - coverage);
    double variance = pointVariance;
    if (footprint > 1e-5) {
        static const auto rule = gaussLegendre(16);
        const double rate = -std::log(1 - coverage) / meanArea_;
        const double reach = std::min(2 * maximumRadius_, footprint);
        double sum = 0;
        for (const auto& [x, weightX] : rule)
            for (const auto& [y, weightY] : rule)
                sum += weightX * weightY * (footprint - reach * x) * (footprint - reach * y) *
                       (1 - coverage) * (1 - coverage) *
                       (std::exp(rate * meanOverlap(std::hypot(reach * x, reach * y))) - 1);
        variance = std::min(pointVariance, std::max(0.0, sum * 4 * reach * reach / std::pow(footprint, 4)));
    }
    return std::sqrt(variance / (0.25 * std::max(spectralPixelVariance(footprint), 1e-12)));
}

} // namespace lumisort::film
