#pragma once

#include "film/optics/SpectralGrid.h"
#include "film/optics/Triple.h"

#include <array>
#include <cstddef>

namespace lumisort::film {

/// The spectral transmissions of three dyes at 33 levels of density each, and the weights of the three
/// channels that see their product.
struct TransmissionTables {
    static constexpr std::size_t levels = 33;
    static constexpr std::size_t paddedLevels = 40; ///< whole vectors of any processor

    /// Side by side for all levels of the first dye, which a row of a cube runs through.
    alignas(64) Spectral<std::array<double, paddedLevels>> first{};
    std::array<Spectral<double>, levels> second{};
    std::array<Spectral<double>, levels> third{};
    Spectral<double> base{}; ///< of the film without dyes
    Spectral<Vector3> weights{};

    struct Row {
        alignas(64) std::array<std::array<double, paddedLevels>, 3> sums{}; ///< by channel, then level
    };
    /// The weighted sums over wavelengths for every level of the first dye and one of each other. The
    /// factors are multiplied and the terms added in the order of the plain loop, each rounded by itself.
    void sumRow(std::size_t secondLevel, std::size_t thirdLevel, Row& row) const;
};

} // namespace lumisort::film
