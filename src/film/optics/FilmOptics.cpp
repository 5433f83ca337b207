#include "film/optics/FilmOptics.h"

#include <utility>

namespace lumisort::film {

FilmOptics buildOptics(FilmStock stock, FilmPaper paper, int workers, std::stop_token stop) {
    const FilmSpectralModel model(stock, paper);
    DensityCube negative = negativeCube(model, workers, stop);
    ReflectionCube print = paperCube(model, workers, stop);
    ExposureCube exposure = exposureCube(model, workers, std::move(stop));
    return {model, std::move(exposure), densityCurves(model), std::move(negative), std::move(print)};
}

} // namespace lumisort::film
