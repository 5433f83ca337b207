#pragma once

#include "film/optics/FilmLookupCube.h"
#include "film/optics/FilmSpectralModel.h"

#include <cstddef>
#include <stop_token>
#include <vector>

namespace lumisort::film {

/// Nodes on each axis of the cubes.
inline constexpr int cubeDimension = 33;
/// Densities travel through images divided by this number, so that 0 to 3.2 fits 0 to 1.
inline constexpr double densityScale = 3.2;
/// What the exposure cube's values are multiplied by; the rest is headroom for colours beyond white.
inline constexpr double exposureTableFactor = 0.25;

/// The builders below spread blue slices over `workers` threads, the caller's among them (0: as many as
/// the processor runs at once). Their results are the same for any number. Each throws tasks::Cancelled
/// within one slice of a request to stop.

/// From a colour's linear RGB to the relative exposures of the film's layers, times exposureTableFactor.
FilmLookupCube exposureCube(const FilmSpectralModel& model, int workers = 0, std::stop_token stop = {});

enum class OpticalCube {
    negative, ///< film dye densities to the densities that the paper's channels see, all over densityScale
    paper,    ///< paper dye densities over densityScale to display RGB, between the model's bounds
};
FilmLookupCube opticalCube(const FilmSpectralModel& model, OpticalCube kind, int workers = 0,
                           std::stop_token stop = {});

/// Developed densities over densityScale at exposures evenly spaced in log: entry i of 2048 stands for
/// 10^(9 i / 2047 - 6) times mid-grey. Four floats each: the three layers, then 1.
inline constexpr std::size_t densityCurveEntries = 2048;
std::vector<float> densityCurveImage(const FilmSpectralModel& model);

/// All that rendering with one stock and paper looks up.
struct FilmOptics {
    FilmSpectralModel model;
    FilmLookupCube negative;
    FilmLookupCube paper;
    FilmLookupCube exposure;
    std::vector<float> curves;
};
FilmOptics buildOptics(FilmStock stock, FilmPaper paper, int workers = 0, std::stop_token stop = {});

} // namespace lumisort::film
