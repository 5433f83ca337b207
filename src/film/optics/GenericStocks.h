#pragma once

#include "film/optics/StockProfile.h"

namespace lumisort::film {

/// The stocks that no data sheet backs: assumed sigmoid curves, Gaussian sensitivities and dyes on a clear
/// base.
std::vector<StockProfile> genericProfiles();

} // namespace lumisort::film
