#include "film/optics/FilmOptics.h"

#include <utility>

namespace lumisort::film {

FilmOptics buildOptics(FilmStock stock, FilmPaper paper, int workers, std::stop_token stop) {
    FilmSpectralModel model(stock, paper);
    DensityCube negative = negativeCube(model, workers, stop);
    ReflectionCube print = paperCube(model, workers, stop);
    ExposureCube exposure = exposureCube(model, workers, std::move(stop));
    DensityCurves curves = densityCurves(model);
    return {std::move(model), std::move(exposure), std::move(curves), std::move(negative), std::move(print)};
}

} // namespace lumisort::film
