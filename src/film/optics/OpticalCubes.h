#pragma once

#include "film/optics/FilmLookupCube.h"
#include "film/optics/FilmSpectralModel.h"

#include <stop_token>

namespace lumisort::film {

/// Three densities to three densities; both sides of the cube hold density / scale.
struct DensityCube {
    FilmLookupCube cube;
    double scale = 0;
};

/// Three dye densities, divided by `scale`, to the display colour minimums + ranges · node.
struct ReflectionCube {
    FilmLookupCube cube;
    double scale = 0;
    LinearRgb minimums;
    LinearRgb ranges;
};

/// The builders work as exposureCube() does.

/// The negative: densities of the film's dyes to the densities that the paper's layers see, base included.
DensityCube negativeCube(const FilmSpectralModel& model, int workers = 0, std::stop_token stop = {});

/// The print: densities of the paper's dyes to the colour that it shows under daylight.
ReflectionCube paperCube(const FilmSpectralModel& model, int workers = 0, std::stop_token stop = {});

} // namespace lumisort::film
