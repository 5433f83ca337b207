#pragma once

#include "film/optics/Triple.h"

#include <cstdint>
#include <vector>

namespace lumisort::film {

/// The random amplitudes of one grain field, a vector of the three layers for each wave.
struct GrainRealization {
    /// Standard normal amplitudes; `correlation` is the share of variance that the layers have in common, all
    /// of it in a monochrome field. The same arguments give the same field on every machine.
    GrainRealization(int modeCount, std::uint32_t seed, double correlation, bool monochrome);

    std::vector<Vector3> cosine;
    std::vector<Vector3> sine;
};

} // namespace lumisort::film
