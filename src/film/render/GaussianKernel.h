#pragma once

#include <vector>

namespace lumisort::film {

/// The weights of a Gaussian blur along one axis: 2 · radius + 1 samples of the Gaussian at whole pixels,
/// with sum 1.
struct GaussianKernel {
    /// The samples reach 4.25 standard deviations, beyond which the tails hold 2e-5 of the whole.
    explicit GaussianKernel(double sigmaPixels);

    int radius;
    std::vector<float> weights;
};

} // namespace lumisort::film
