#pragma once

#include "film/optics/DensityCurves.h"
#include "film/optics/ExposureCube.h"
#include "film/optics/OpticalCubes.h"

namespace lumisort::film {

/// All that rendering with one stock and paper reads: the model with the profiles of both (grain, halation,
/// coupling, paper curve) and the tables in the order in which a picture passes them. A value of 1.8 MB;
/// constant once built, readable from any thread.
struct FilmOptics {
    FilmSpectralModel model;
    ExposureCube exposure; ///< colour to layer exposures
    DensityCurves curves;  ///< layer exposures to dye densities
    DensityCube negative;  ///< dye densities to what the paper sees
    ReflectionCube paper;  ///< paper dye densities to display colour
};

/// Builds the tables as exposureCube() does: any number of workers, tasks::Cancelled within one slice of a
/// stop.
FilmOptics buildOptics(FilmStock stock, FilmPaper paper, int workers = 0, std::stop_token stop = {});

} // namespace lumisort::film
