#include "film/render/generators/Cube.h"

namespace lumisort::film::pipelines {

using namespace Halide;

/// Linear RGB to the relative exposures of the film's layers: the exposure cube knows them for each
/// chromaticity (the colour with its largest channel 1), which is then restored to the pixel's intensity and
/// the camera's gain.
class SpectralExposure : public Generator<SpectralExposure> {
public:
    Input<Buffer<float>> scene{"scene", 3};        ///< x, y, channel
    Input<Buffer<float>> exposureCube{"cube", 2};  ///< see Cube
    Input<int> nodes{"nodes"};                     ///< of the cube, on each axis
    Input<float> gain{"gain"};                     ///< of the camera's exposure, over the cube's own scale
    Output<Buffer<float>> exposure{"exposure", 3}; ///< x, y, layer

    void generate() {
        light(x, y, c) = max(scene(x, y, c), 0.0f);
        peak(x, y) = max(light(x, y, 0), light(x, y, 1), light(x, y, 2));
        const auto chromaticity = [this](int channel) {
            return light(x, y, channel) / max(peak(x, y), 1e-12f);
        };
        exposure(x, y, c) =
            lookUp({exposureCube, nodes}, c, chromaticity(0), chromaticity(1), chromaticity(2)) * peak(x, y) *
            gain;
    }

    void schedule() {
        exposure.bound(c, 0, 3).reorder(c, x, y).unroll(c).vectorize(x, 8, TailStrategy::RoundUp);
        peak.compute_at(exposure, x).vectorize(x);
    }

private:
    Var x{"x"}, y{"y"}, c{"c"};
    Func light{"light"}, peak{"peak"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::SpectralExposure, spectral_exposure)
