#pragma once

#include "film/inspect/Chart.h"
#include "film/optics/FilmSpectralModel.h"

namespace lumisort::film {

/// The charts of one film on one paper: the film's sensitivities, characteristic curves, dyes and base, then
/// the paper's sensitivities, curve and dyes. Wavelength axes are painted with "url(#spectrum)".
std::array<Chart, 6> filmCharts(const FilmSpectralModel& model);

} // namespace lumisort::film
