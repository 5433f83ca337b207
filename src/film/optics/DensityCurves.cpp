#include "film/optics/DensityCurves.h"

#include "film/optics/FilmConstants.h"

#include <cmath>

namespace lumisort::film {

DensityCurves densityCurves(const FilmSpectralModel& model) {
    DensityCurves curves{.texels = {}, .scale = densityScale};
    curves.texels.reserve(DensityCurves::entries * 4);
    for (std::size_t i = 0; i < DensityCurves::entries; ++i) {
        const double exposure = midGreyExposure * std::pow(10.0, DensityCurves::relativeLog(i));
        const Density density = model.layerDensity(Exposure::filled(exposure)) / curves.scale;
        for (std::size_t c = 0; c < 3; ++c) curves.texels.push_back(static_cast<float>(density[c]));
        curves.texels.push_back(1);
    }
    return curves;
}

} // namespace lumisort::film
