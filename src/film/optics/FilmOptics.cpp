#include "film/optics/FilmOptics.h"

#include "film/optics/GenericMaterials.h"

#include <cmath>
#include <utility>

namespace lumisort::film {

std::vector<float> densityCurveImage(const FilmSpectralModel& model) {
    std::vector<float> texels;
    texels.reserve(densityCurveEntries * 4);
    for (std::size_t i = 0; i < densityCurveEntries; ++i) {
        const double relativeLog = static_cast<double>(i) / (densityCurveEntries - 1) * 9 - 6;
        const double exposure = midGreyExposure * std::pow(10.0, relativeLog);
        const Vector3 density = model.layerDensity(Vector3::filled(exposure)) / densityScale;
        for (std::size_t c = 0; c < 3; ++c) texels.push_back(static_cast<float>(density[c]));
        texels.push_back(1);
    }
    return texels;
}

FilmOptics buildOptics(FilmStock stock, FilmPaper paper, int workers, std::stop_token stop) {
    const FilmSpectralModel model(stock, paper);
    FilmLookupCube negative = opticalCube(model, OpticalCube::negative, workers, stop);
    FilmLookupCube print = opticalCube(model, OpticalCube::paper, workers, stop);
    FilmLookupCube exposure = exposureCube(model, workers, stop);
    return {model, std::move(negative), std::move(print), std::move(exposure), densityCurveImage(model)};
}

} // namespace lumisort::film
