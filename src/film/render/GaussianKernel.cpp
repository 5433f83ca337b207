#include "film/render/GaussianKernel.h"

#include <cmath>
#include <cstddef>

namespace lumisort::film {

GaussianKernel::GaussianKernel(double sigmaPixels) : radius(static_cast<int>(std::ceil(4.25 * sigmaPixels))) {
    std::vector<double> samples;
    double sum = 0;
    for (int i = -radius; i <= radius; ++i) {
        const double distance = i / sigmaPixels;
        sum += samples.emplace_back(std::exp(-0.5 * distance * distance));
    }
    for (const double sample : samples) weights.push_back(static_cast<float>(sample / sum));
}

} // namespace lumisort::film
