#pragma once

#include "film/render/FilmChain.h"

#include <array>

namespace lumisort::film {

/// Renders one source again and again with changing settings, and keeps the developed densities and the
/// negative's densities in between: a change of a setting redoes the stages behind the last result that it
/// does not shape. Used by one thread at a time.
class PreviewStages {
public:
    /// The whole picture as linear display RGB. `scene` must be the same in every call until forget(). Throws
    /// tasks::Cancelled; what was finished before stays kept.
    images::LinearImage render(const FilmRecipe& recipe, const images::LinearImage& scene,
                               const ParallelFor& parallelFor, StageTimes* times,
                               const std::stop_token& stop);

    /// To be called before another source is rendered; frees what was kept.
    void forget();

private:
    struct Kept {
        std::size_t stages; ///< how many of filmStages() have been passed
        bool valid = false;
        FilmSettings settings; ///< as settingsRead() has them after these stages
        std::uint32_t grainSeed = 0;
        Planes planes;
    };

    std::array<Kept, 2> kept_{Kept{3}, Kept{5}};
};

} // namespace lumisort::film
