#include "platform/images/development/QuadRows.h"

#include "platform/images/development/Strips.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <limits>

namespace lumisort::images {
namespace {

/// What the 3 × 3 samples around one tell.
Highlights::Evidence evidenceAround(const Mosaic& mosaic, int x, int y) {
    Highlights::Evidence evidence;
    Highlights::Channels counts{};
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const int atX = reflect(x + dx, mosaic.samples.width),
                      atY = reflect(y + dy, mosaic.samples.height);
            const auto colour = static_cast<std::size_t>(mosaic.colourAt(atX, atY));
            evidence.mean[colour] += mosaic.valueAt(atX, atY);
            evidence.unsaturated[colour] += mosaic.isSaturated(atX, atY) ? 0.F : 1.F;
            ++counts[colour];
        }
    for (std::size_t c = 0; c < 3; ++c) evidence.mean[c] /= counts[c], evidence.unsaturated[c] /= counts[c];
    return evidence;
}

bool anySaturated(const Mosaic& mosaic, const std::stop_token& stop) {
    std::atomic<bool> found = false;
    forEachStrip(
        mosaic.samples.height, 64,
        [&](int top, int bottom) {
            for (int y = top; y < bottom && !found; ++y) {
                const auto* row = mosaic.samples.row(y);
                std::array<std::uint16_t, 2> most{};
                for (int x = 0; x + 1 < mosaic.samples.width; x += 2) {
                    most[0] = std::max(most[0], row[x]);
                    most[1] = std::max(most[1], row[x + 1]);
                }
                for (int parity : {0, 1})
                    if (most[static_cast<std::size_t>(parity)] >=
                        mosaic.saturated[static_cast<std::size_t>(mosaic.colourAt(parity, y))])
                        found = true;
            }
        },
        stop);
    return found;
}

} // namespace

QuadRows::QuadRows(int columns, int rows)
    : columns_(columns), rows_(rows),
      samples_(std::make_unique_for_overwrite<float[]>(4 * static_cast<std::size_t>(columns) *
                                                       static_cast<std::size_t>(rows))) {}

void QuadRows::read(const Mosaic& mosaic, const Highlights* highlights, int x, int y) {
    for (int line = 0; line < 2 * rows_; ++line)
        for (int side : {0, 1})
            readLine(mosaic, highlights, x + side, reflect(y + line, mosaic.samples.height),
                     at((line & 1) * 2 + side) + static_cast<std::ptrdiff_t>(line / 2) * columns_);
}

/// Every second sample of one row of the mosaic.
void QuadRows::readLine(const Mosaic& mosaic, const Highlights* highlights, int x, int y, float* out) const {
    const int width = mosaic.samples.width;
    const auto* row = mosaic.samples.row(y);
    const auto colour = static_cast<std::size_t>(mosaic.colourAt(x & 1, y));
    const float* const black = mosaic.blackRow(y);
    const int blackWidth = mosaic.blackWidth;
    const float scale = mosaic.scale[colour];
    const auto saturated = highlights ? mosaic.saturated[colour] : std::numeric_limits<std::uint16_t>::max();

    const auto readOne = [&](int quad) {
        const int at = reflect(x + 2 * quad, width);
        out[quad] = (static_cast<float>(row[at]) - black[at % blackWidth]) * scale;
        return row[at];
    };
    // The quads whose samples lie inside, without mirroring.
    const int first = std::clamp((1 - x) / 2, 0, columns_),
              last = std::clamp((width - x + 1) / 2, first, columns_);
    std::uint16_t most = 0;
    for (int quad = 0; quad < first; ++quad) most = std::max(most, readOne(quad));
    if (blackWidth <= 2) {
        const float level = black[(x & 1) % blackWidth];
        for (int quad = first; quad < last; ++quad) {
            const std::uint16_t sample = row[x + 2 * quad];
            out[quad] = (static_cast<float>(sample) - level) * scale;
            most = std::max(most, sample);
        }
    } else {
        for (int quad = first; quad < last; ++quad) most = std::max(most, readOne(quad));
    }
    for (int quad = last; quad < columns_; ++quad) most = std::max(most, readOne(quad));

    if (!highlights || most < saturated) return;
    for (int quad = 0; quad < columns_; ++quad) {
        const int at = reflect(x + 2 * quad, width);
        if (row[at] >= saturated)
            out[quad] = std::max(out[quad], highlights->estimate(static_cast<float>(at) + 0.5F,
                                                                 static_cast<float>(y) + 0.5F,
                                                                 evidenceAround(mosaic, at, y))[colour]);
    }
}

std::optional<Highlights> findHighlights(const Mosaic& mosaic, const CameraColour& colour,
                                         const std::stop_token& stop) {
    if (!anySaturated(mosaic, stop)) return std::nullopt;
    constexpr int side = 8;
    const int columns = (mosaic.samples.width + side - 1) / side,
              rows = (mosaic.samples.height + side - 1) / side;
    std::vector<Highlights::Light> blocks(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    forEachStrip(
        mosaic.samples.height & ~1, 8 * side,
        [&](int top, int bottom) {
            for (int y = top; y < bottom; y += 2)
                for (int x = 0; x + 1 < mosaic.samples.width; x += 2) {
                    Highlights::Channels sums{}, counts{};
                    bool saturated = false;
                    for (int site = 0; site < 4; ++site) {
                        const int atX = x + (site & 1), atY = y + (site >> 1);
                        const auto channel = static_cast<std::size_t>(mosaic.colourAt(atX, atY));
                        sums[channel] += mosaic.valueAt(atX, atY);
                        ++counts[channel];
                        saturated |= mosaic.isSaturated(atX, atY);
                    }
                    if (saturated) continue;
                    float nearest = 0;
                    for (std::size_t c = 0; c < 3; ++c) {
                        sums[c] /= counts[c];
                        nearest = std::max(nearest, sums[c] / colour.saturation[c]);
                    }
                    blocks[static_cast<std::size_t>(y / side) * static_cast<std::size_t>(columns) +
                           static_cast<std::size_t>(x / side)]
                        .add(sums, 3, std::min(nearest, 1.F));
                }
        },
        stop);
    return Highlights(3, side, columns, rows, std::move(blocks));
}

} // namespace lumisort::images
