#include "film/render/FilmChain.h"

#include "platform/tasks/ParallelFor.h"

#include <chrono>

namespace lumisort::film {

namespace {

/// Rows that steps without a border take at a time: their few hundred kilobytes stay in the processor's
/// cache.
constexpr int blockRows = 16;
static_assert(blockRows % PlaneView::rowSlack == 0);

/// More light than any sensor holds above its white.
constexpr float mostLight = 1e6f;

class Timer {
public:
    Timer(StageTimes* times, std::size_t stage) : times_(times), stage_(stage) {
        if (times_) start_ = std::chrono::steady_clock::now();
    }
    ~Timer() {
        if (!times_) return;
        const auto passed = std::chrono::steady_clock::now() - start_;
        (*times_)[stage_] += std::chrono::duration_cast<std::chrono::nanoseconds>(passed).count();
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

private:
    StageTimes* times_;
    std::size_t stage_;
    std::chrono::steady_clock::time_point start_;
};

/// The regions of `picture` that tiles of at most `size` × `size` pixels cut `wanted` into.
std::vector<Rectangle> tilesOf(const Rectangle& wanted, int size) {
    const auto edges = [size](int first, int extent) {
        const int count = (extent + size - 1) / size;
        std::vector<int> cuts;
        // Multiples of 64 columns and 16 rows from the first, as even as they can be.
        const int step = ((extent + count - 1) / count + 63) / 64 * 64;
        for (int at = 0; at < extent; at += step) cuts.push_back(first + at);
        cuts.push_back(first + extent);
        return cuts;
    };
    const auto columns = edges(wanted.x, wanted.width), rows = edges(wanted.y, wanted.height);
    std::vector<Rectangle> tiles;
    for (std::size_t j = 0; j + 1 < rows.size(); ++j)
        for (std::size_t i = 0; i + 1 < columns.size(); ++i)
            tiles.push_back({columns[i], rows[j], columns[i + 1] - columns[i], rows[j + 1] - rows[j]});
    return tiles;
}

/// Renders tiles whose input `load(region, scratch)` returns as a view.
template <class Load>
void renderEach(const FilmChain& chain, const Rectangle& wanted, const ParallelFor& parallelFor, Load load,
                const std::function<void(const PlaneView&)>& take, StageTimes* times, std::stop_token stop) {
    const auto tiles = tilesOf(wanted, chain.tileSize());
    ScratchPool<std::pair<Planes, Planes>> tilePlanes; // input and output
    parallelFor(
        tiles.size(),
        [&](std::size_t index) {
            tasks::checkCancelled(stop);
            const auto lease = tilePlanes.borrow();
            auto& [input, output] = *lease;
            output.reshape(tiles[index]);
            chain.render(load(chain.needed(tiles[index]), input), output.view(), times);
            take(output.view());
        },
        stop);
    tasks::checkCancelled(stop);
}

} // namespace

void onAllProcessors(std::size_t count, const std::function<void(std::size_t)>& work, std::stop_token stop) {
    tasks::parallelFor(count, 0, stop, work);
}

FilmChain::FilmChain(const FilmRecipe& recipe, std::size_t first, std::size_t last)
    : picture_(recipe.picture()) {
    const auto stages = filmStages();
    for (std::size_t i = first; i < last; ++i)
        if (auto render = stages[i].prepare(recipe))
            steps_.push_back({i, stages[i].border(recipe), std::move(render)});
}

FilmChain::FilmChain(const FilmRecipe& recipe) : FilmChain(recipe, 0, filmStages().size()) {}

Rectangle FilmChain::needed(const Rectangle& wanted) const {
    int border = 0;
    for (const auto& step : steps_) border += step.border;
    return wanted.grown(border, picture_);
}

int FilmChain::tileSize() const {
    int border = 0;
    for (const auto& step : steps_) border += step.border;
    return std::clamp(border * 12 / 64 * 64, 512, 2048);
}

void FilmChain::renderPointwise(std::span<const Step> steps, const PlaneView& in, const PlaneView& out,
                                Workspace& workspace, StageTimes* times) const {
    for (int y = out.region.y; y < out.region.bottom(); y += blockRows) {
        const Rectangle rows{out.region.x, y, out.region.width, std::min(blockRows, out.region.bottom() - y)};
        PlaneView from = in.part(rows);
        for (std::size_t i = 0; i < steps.size(); ++i) {
            PlaneView to = out.part(rows);
            if (i + 1 < steps.size()) {
                auto& block = workspace.blocks[i % 2];
                block.reshape(rows);
                to = block.view();
            }
            const Timer timer(times, steps[i].index);
            steps[i].render(from, to, workspace.scratch);
            from = to;
        }
    }
}

void FilmChain::render(const PlaneView& in, const PlaneView& out, StageTimes* times) const {
    const auto lease = workspaces_.borrow();
    auto& workspace = *lease;
    if (steps_.empty()) return copyRegion(in, out);
    // What each step must deliver, from the last back to the first.
    std::vector<Rectangle> regions(steps_.size(), out.region);
    for (std::size_t i = steps_.size() - 1; i > 0; --i)
        regions[i - 1] = regions[i].grown(steps_[i].border, picture_);
    PlaneView from = in.part(regions[0].grown(steps_[0].border, picture_));
    for (std::size_t i = 0, parity = 0; i < steps_.size(); parity ^= 1) {
        std::size_t end = i + 1;
        if (steps_[i].border == 0)
            while (end < steps_.size() && steps_[end].border == 0) ++end;
        PlaneView to = out;
        if (end < steps_.size()) {
            workspace.strips[parity].reshape(regions[end - 1]);
            to = workspace.strips[parity].view();
        }
        if (steps_[i].border == 0) {
            renderPointwise(std::span(steps_).subspan(i, end - i), from, to, workspace, times);
        } else {
            const Timer timer(times, steps_[i].index);
            steps_[i].render(from, to, workspace.scratch);
        }
        from = to;
        i = end;
    }
}

void copyScene(const images::LinearImage& scene, const PlaneView& out) {
    const auto& region = out.region;
    for (int c = 0; c < 3; ++c)
        for (int y = region.y; y < region.bottom(); ++y) {
            const float* in = scene.plane(c).row(y) + region.x;
            float* light = out.row(c, y);
            // Not std::clamp: a comparison with what is no number is false, and that pixel is 0.
            for (int x = 0; x < region.width; ++x) {
                const float positive = in[x] > 0 ? in[x] : 0.0f;
                light[x] = positive < mostLight ? positive : mostLight;
            }
        }
}

void renderTiles(const FilmChain& chain, const images::LinearImage& scene, const Rectangle& wanted,
                 const ParallelFor& parallelFor, const std::function<void(const PlaneView&)>& take,
                 StageTimes* times, std::stop_token stop) {
    renderEach(
        chain, wanted, parallelFor,
        [&scene](const Rectangle& region, Planes& input) {
            input.reshape(region);
            copyScene(scene, input.view());
            return input.view();
        },
        take, times, stop);
}

void renderTiles(const FilmChain& chain, const Planes& kept, const Rectangle& wanted,
                 const ParallelFor& parallelFor, const std::function<void(const PlaneView&)>& take,
                 StageTimes* times, std::stop_token stop) {
    renderEach(
        chain, wanted, parallelFor,
        [&kept](const Rectangle& region, Planes&) { return kept.view().part(region); }, take, times, stop);
}

} // namespace lumisort::film
