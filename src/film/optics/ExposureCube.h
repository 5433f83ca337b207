#pragma once

#include "film/optics/FilmLookupCube.h"
#include "film/optics/FilmSpectralModel.h"

#include <stop_token>

namespace lumisort::film {

/// The relative exposures of the film's layers for colours (linear RGB, 0 to 1): `factor` times the exposure
/// is stored, the rest is headroom for colours that a layer sees brighter than white.
struct ExposureCube {
    FilmLookupCube cube;
    double factor = 0.25;
};

/// Fits a spectrum to each node's colour. Blue slices are spread over `workers` threads, the caller's among
/// them (0: as many as the processor runs at once); the result is the same for any number. Throws
/// tasks::Cancelled within one slice of a request to stop.
ExposureCube exposureCube(const FilmSpectralModel& model, int workers = 0, std::stop_token stop = {});

} // namespace lumisort::film
