#pragma once

#include "film/render/ScratchPool.h"
#include "film/render/Stage.h"
#include "platform/images/LinearImage.h"

#include <atomic>
#include <functional>
#include <stop_token>
#include <vector>

namespace lumisort::film {

/// Nanoseconds of processor time that each stage of filmStages() has taken so far.
using StageTimes = std::array<std::atomic<std::int64_t>, 7>;

/// Computes work(0) … work(count - 1), in any order and on any threads; returns when all are done. Throws
/// what one of them threw, and tasks::Cancelled after a stop.
using ParallelFor = std::function<void(std::size_t count, const std::function<void(std::size_t)>& work,
                                       std::stop_token stop)>;

/// The program's pool, on as many threads as the processor runs at once.
void onAllProcessors(std::size_t count, const std::function<void(std::size_t)>& work, std::stop_token stop);

/// The stages [first, last) of one recipe, ready to render any rectangle of the picture alone.
class FilmChain {
public:
    FilmChain(const FilmRecipe& recipe, std::size_t first, std::size_t last);
    /// All stages.
    explicit FilmChain(const FilmRecipe& recipe);

    const Rectangle& picture() const { return picture_; }

    /// What the chain reads to render `wanted`: grown by its stages' borders.
    Rectangle needed(const Rectangle& wanted) const;

    /// Where rows and columns are cut apart does not change the pixels: tiles of this size keep the share of
    /// pixels that neighbours compute twice small and their memory bounded.
    int tileSize() const;

    /// Renders the region of `out` from `in`, which covers what is needed for it. From any thread.
    void render(const PlaneView& in, const PlaneView& out, StageTimes* times = nullptr) const;

private:
    struct Step {
        std::size_t index;
        int border;
        StageRendering render;
    };
    struct Workspace {
        StageScratch scratch;
        std::array<Planes, 2> strips; ///< input and output of a step
        std::array<Planes, 2> blocks; ///< the same for steps without a border
    };

    void renderPointwise(std::span<const Step> steps, const PlaneView& in, const PlaneView& out,
                         Workspace& workspace, StageTimes* times) const;

    Rectangle picture_;
    std::vector<Step> steps_;
    mutable ScratchPool<Workspace> workspaces_;
};

/// Copies a region of a photo; what is no number becomes 0, and infinite light the largest that the chain
/// tells apart.
void copyScene(const images::LinearImage& scene, const PlaneView& out);

/// Renders `wanted` of `scene` in tiles spread by `parallelFor` and calls `take` with each, from the worker
/// that made it. Throws tasks::Cancelled within one tile of a stop.
void renderTiles(const FilmChain& chain, const images::LinearImage& scene, const Rectangle& wanted,
                 const ParallelFor& parallelFor, const std::function<void(const PlaneView&)>& take,
                 StageTimes* times = nullptr, std::stop_token stop = {});
/// The same from the result of earlier stages.
void renderTiles(const FilmChain& chain, const Planes& kept, const Rectangle& wanted,
                 const ParallelFor& parallelFor, const std::function<void(const PlaneView&)>& take,
                 StageTimes* times = nullptr, std::stop_token stop = {});

} // namespace lumisort::film
