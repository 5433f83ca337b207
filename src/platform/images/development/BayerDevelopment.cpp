#include "platform/images/development/BayerDevelopment.h"

#include "platform/images/development/QuadRows.h"
#include "platform/images/development/Strips.h"

#include <HalideBuffer.h>
#include <ratio_corrected_demosaicing.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <vector>

namespace lumisort::images {
namespace {

/// Quads that the pipeline looks at beyond those that it develops.
constexpr int border = 12;
constexpr int stripRows = 128;
/// The pipeline writes whole vectors.
constexpr int vectorWidth = 16;

constexpr int roundUp(int value, int step) {
    return (value + step - 1) / step * step;
}

/// Columns and rows that lie before the first red sample.
struct Phase {
    int x = 0, y = 0;
};

Phase phaseOf(const Mosaic& mosaic) {
    for (int site = 0; site < 4; ++site)
        if (mosaic.colours[static_cast<std::size_t>(site)] == 0) return {site & 1, site >> 1};
    throw std::logic_error("a Bayer mosaic without red");
}

} // namespace

LinearImage demosaicBayer(const Mosaic& mosaic, const CameraColour& colour, Turn turn,
                          const std::stop_token& stop) {
    const int width = mosaic.samples.width, height = mosaic.samples.height;
    const auto highlights = findHighlights(mosaic, colour, stop);
    const Phase phase = phaseOf(mosaic);
    std::array<float, 9> matrix{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            matrix[row * 3 + column] = colour.toLinear[row][column];

    LinearImage upright = turn.imageFor(width, height);
    // Strips start at whole quads, which begin at a red sample: up to one sample outside of the picture.
    const int wide = roundUp(width + phase.x, vectorWidth);
    forEachStrip(
        height + phase.y, stripRows,
        [&](int top, int bottom) {
            const int rows = roundUp(bottom - top, 2);
            QuadRows quads(wide / 2 + 2 * border, rows / 2 + 2 * border);
            quads.read(mosaic, highlights ? &*highlights : nullptr, -phase.x - 2 * border,
                       top - phase.y - 2 * border);
            const auto samples = std::make_unique_for_overwrite<float[]>(3 * static_cast<std::size_t>(wide) *
                                                                         static_cast<std::size_t>(rows));
            Halide::Runtime::Buffer<float> mosaicBuffer(quads.data(), quads.columns(), quads.rows(), 4),
                matrixBuffer(matrix.data(), 3, 3), linear(samples.get(), wide, rows, 3);
            mosaicBuffer.set_min(-border, -border, 0);
            if (ratio_corrected_demosaicing(mosaicBuffer, matrixBuffer, linear) != 0)
                throw std::runtime_error("the demosaicing pipeline failed");
            const int skipped = top == 0 ? phase.y : 0;
            LinearRows stored;
            for (int channel = 0; channel < 3; ++channel)
                stored[static_cast<std::size_t>(channel)] =
                    View<const float>{samples.get() + static_cast<std::ptrdiff_t>(channel) * wide * rows,
                                      wide, rows, wide}
                        .crop(phase.x, skipped, width, bottom - top - skipped);
            placeUpright(stored, top + skipped - phase.y, turn, upright);
        },
        stop);
    return upright;
}

LinearImage halveBayer(const Mosaic& mosaic, const CameraColour& colour, Turn turn,
                       const std::stop_token& stop) {
    const int width = (mosaic.samples.width + 1) / 2, height = (mosaic.samples.height + 1) / 2;
    const auto highlights = findHighlights(mosaic, colour, stop);
    std::array<std::vector<int>, 3> sitesOf;
    for (int site = 0; site < 4; ++site)
        sitesOf[static_cast<std::size_t>(mosaic.colours[static_cast<std::size_t>(site)])].push_back(site);

    LinearImage upright = turn.imageFor(width, height);
    forEachStrip(
        height, stripRows,
        [&](int top, int bottom) {
            QuadRows quads(width, bottom - top);
            quads.read(mosaic, highlights ? &*highlights : nullptr, 0, 2 * top);
            LinearImage linear(width, bottom - top);
            for (int y = 0; y < bottom - top; ++y)
                for (int x = 0; x < width; ++x) {
                    const float r = quads.plane(sitesOf[0][0]).at(x, y),
                                b = quads.plane(sitesOf[2][0]).at(x, y);
                    const float g =
                        (quads.plane(sitesOf[1][0]).at(x, y) + quads.plane(sitesOf[1][1]).at(x, y)) * 0.5F;
                    for (int channel = 0; channel < 3; ++channel) {
                        const auto& row = colour.toLinear[static_cast<std::size_t>(channel)];
                        linear.plane(channel).at(x, y) = row[0] * r + row[1] * g + row[2] * b;
                    }
                }
            placeUpright({linear.plane(0), linear.plane(1), linear.plane(2)}, top, turn, upright);
        },
        stop);
    return upright;
}

} // namespace lumisort::images
