#include "platform/images/development/Highlights.h"

#include <algorithm>
#include <cstddef>
#include <tuple>
#include <utility>

namespace lumisort::images {
namespace {

using Channels = Highlights::Channels;
using Light = Highlights::Light;

/// Blocks with less light than a few samples near saturation listen to what is around them.
constexpr float enoughWeight = 4;
/// Nearness to saturation from which on the light around tells the colour of what is saturated: not at all
/// below the first, fully from the second on.
constexpr float tellsNothing = 0.55F, tellsAll = 0.8F;

struct Level {
    int columns, rows;
    std::vector<Light> blocks;

    const Light& at(int column, int row) const {
        return blocks[static_cast<std::size_t>(std::clamp(row, 0, rows - 1)) *
                          static_cast<std::size_t>(columns) +
                      static_cast<std::size_t>(std::clamp(column, 0, columns - 1))];
    }
};

void accumulate(Light& sum, const Light& light, float factor) {
    for (std::size_t c = 0; c < sum.colour.size(); ++c) sum.colour[c] += light.colour[c] * factor;
    sum.weight += light.weight * factor;
    sum.nearness += light.nearness * factor;
}

Level halved(const Level& fine) {
    Level coarse{.columns = (fine.columns + 1) / 2, .rows = (fine.rows + 1) / 2, .blocks = {}};
    coarse.blocks.resize(static_cast<std::size_t>(coarse.columns) * static_cast<std::size_t>(coarse.rows));
    for (int row = 0; row < fine.rows; ++row)
        for (int column = 0; column < fine.columns; ++column)
            accumulate(
                coarse.blocks[static_cast<std::size_t>(row / 2) * static_cast<std::size_t>(coarse.columns) +
                              static_cast<std::size_t>(column / 2)],
                fine.at(column, row), 1);
    return coarse;
}

/// Fills up what `fine` lacks from `coarse`, which lacks nothing, between its four nearest blocks.
void fillFrom(const Level& coarse, Level& fine) {
    for (int row = 0; row < fine.rows; ++row)
        for (int column = 0; column < fine.columns; ++column) {
            Light& light =
                fine.blocks[static_cast<std::size_t>(row) * static_cast<std::size_t>(fine.columns) +
                            static_cast<std::size_t>(column)];
            const float missing = 1 - light.weight / enoughWeight;
            if (missing <= 0) continue;
            const int across = column & 1 ? 1 : -1, down = row & 1 ? 1 : -1;
            for (const auto& [dx, dy, share] : {std::tuple{0, 0, 9.F / 16},
                                                {across, 0, 3.F / 16},
                                                {0, down, 3.F / 16},
                                                {across, down, 1.F / 16}}) {
                const Light& around = coarse.at(column / 2 + dx, row / 2 + dy);
                accumulate(light, around,
                           share * missing * enoughWeight / std::max(around.weight, enoughWeight));
            }
        }
}

float smoothStep(float from, float to, float value) {
    const float t = std::clamp((value - from) / (to - from), 0.F, 1.F);
    return t * t * (3 - 2 * t);
}

/// The colour that light stands for: neutral where it ends far below saturation.
Channels colourOf(const Light& light, int channels) {
    float sum = 0;
    for (int c = 0; c < channels; ++c) sum += std::max(light.colour[static_cast<std::size_t>(c)], 0.F);
    const float trust =
        light.weight > 0 ? smoothStep(tellsNothing, tellsAll, light.nearness / light.weight) : 0.F;
    constexpr float leastRatio = 1.F / 64;
    Channels colour{1, 1, 1, 1};
    if (sum > 0)
        for (std::size_t c = 0; c < static_cast<std::size_t>(channels); ++c) {
            const float ratio = std::max(light.colour[c] * static_cast<float>(channels) / sum, leastRatio);
            colour[c] = 1 + trust * (ratio - 1);
        }
    return colour;
}

} // namespace

void Light::add(const Channels& values, int channels, float nearest) {
    // The eighth power: half as bright counts a 256th, or wide dim surroundings would outweigh a narrow rim.
    const float squared = nearest * nearest, share = squared * squared * squared * squared;
    for (std::size_t c = 0; c < static_cast<std::size_t>(channels); ++c) colour[c] += values[c] * share;
    weight += share;
    nearness += nearest * share;
}

Highlights::Highlights(int channels, int blockSide, int columns, int rows, std::vector<Light> blocks)
    : channels_(channels), blockSide_(static_cast<float>(blockSide)), columns_(columns), rows_(rows) {
    std::vector<Level> levels{{.columns = columns, .rows = rows, .blocks = std::move(blocks)}};
    while (levels.back().columns > 1 || levels.back().rows > 1) levels.push_back(halved(levels.back()));
    for (std::size_t level = levels.size() - 1; level > 0; --level)
        fillFrom(levels[level], levels[level - 1]);
    colours_.reserve(levels.front().blocks.size());
    for (const Light& light : levels.front().blocks) colours_.push_back(colourOf(light, channels));
}

Channels Highlights::colourAt(float x, float y) const {
    const float across = std::clamp(x / blockSide_ - 0.5F, 0.F, static_cast<float>(columns_ - 1));
    const float down = std::clamp(y / blockSide_ - 0.5F, 0.F, static_cast<float>(rows_ - 1));
    const int column = static_cast<int>(across), row = static_cast<int>(down);
    const float right = across - static_cast<float>(column), below = down - static_cast<float>(row);
    const auto block = [this](int atColumn, int atRow) -> const Channels& {
        return colours_[static_cast<std::size_t>(std::min(atRow, rows_ - 1)) *
                            static_cast<std::size_t>(columns_) +
                        static_cast<std::size_t>(std::min(atColumn, columns_ - 1))];
    };
    Channels colour{};
    for (std::size_t c = 0; c < colour.size(); ++c)
        colour[c] = (block(column, row)[c] * (1 - right) + block(column + 1, row)[c] * right) * (1 - below) +
                    (block(column, row + 1)[c] * (1 - right) + block(column + 1, row + 1)[c] * right) * below;
    return colour;
}

Channels Highlights::estimate(float x, float y, const Evidence& evidence) const {
    const Channels colour = colourAt(x, y);
    // Of light of this colour each channel alone tells the brightness; a saturated one tells the least that
    // it can be.
    float sum = 0, weights = 0, least = 0;
    for (std::size_t c = 0; c < static_cast<std::size_t>(channels_); ++c) {
        const float brightness = evidence.mean[c] / colour[c];
        sum += brightness * evidence.unsaturated[c];
        weights += evidence.unsaturated[c];
        if (evidence.unsaturated[c] < 1) least = std::max(least, brightness);
    }
    const float brightness = weights > 0 ? std::max(sum / weights, least) : least;
    Channels light{};
    for (std::size_t c = 0; c < static_cast<std::size_t>(channels_); ++c) light[c] = colour[c] * brightness;
    return light;
}

} // namespace lumisort::images
