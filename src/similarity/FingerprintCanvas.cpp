#include "similarity/FingerprintCanvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace lumisort::similarity {

namespace {

constexpr double lobes = 3;

double lanczos(double x) {
    if (x == 0) return 1;
    if (std::abs(x) >= lobes) return 0;
    const double angle = std::numbers::pi * x;
    return lobes * std::sin(angle) * std::sin(angle / lobes) / (angle * angle);
}

/// The samples that one canvas row or column is made of, with weights that sum to one.
struct Taps {
    int first = 0;
    std::vector<float> weights;
};

/// Taps for each of the canvas's lines along a side of `length` samples. Samples beyond the edge have no
/// part.
std::vector<Taps> canvasTaps(int length) {
    const double step = static_cast<double>(length) / canvasSide;
    const double stretch = std::max(1.0, step); // enlarging keeps the filter as wide as one sample
    std::vector<Taps> lines(canvasSide);
    for (int line = 0; line < canvasSide / 2; ++line) {
        const double centre = (line + 0.5) * step;
        const int first = std::max(0, static_cast<int>(std::floor(centre - lobes * stretch)));
        const int last = std::min(length - 1, static_cast<int>(std::ceil(centre + lobes * stretch)));
        std::vector<double> weights;
        double sum = 0;
        for (int sample = first; sample <= last; ++sample) {
            weights.push_back(lanczos((sample + 0.5 - centre) / stretch));
            sum += weights.back();
        }
        auto& [start, taps] = lines[line];
        start = first;
        for (const double weight : weights) taps.push_back(static_cast<float>(weight / sum));
        // The other half is this one's mirror image, to the last bit.
        lines[canvasSide - 1 - line] = {length - 1 - last, {taps.rbegin(), taps.rend()}};
    }
    return lines;
}

/// R, G, B of the photo over white.
std::vector<float> overWhite(const images::Bitmap& photo) {
    const auto rgba = photo.rgba();
    std::vector<float> rgb(rgba.size() / 4 * 3);
    float* out = rgb.data();
    for (std::size_t pixel = 0; pixel < rgba.size(); pixel += 4) {
        const float opacity = static_cast<float>(rgba[pixel + 3]) / 255.0F;
        for (std::size_t channel = 0; channel < 3; ++channel)
            *out++ = 255.0F - opacity * (255.0F - static_cast<float>(rgba[pixel + channel]));
    }
    return rgb;
}

} // namespace

FingerprintCanvas drawCanvas(const images::Bitmap& photo) {
    const std::vector<float> source = overWhite(photo);
    const std::vector<Taps> rows = canvasTaps(photo.height());
    const std::vector<Taps> columns = canvasTaps(photo.width());
    const std::size_t rowLength = std::size_t{3} * photo.width();

    FingerprintCanvas canvas;
    std::vector<float> line(rowLength);
    auto* out = canvas.rgb.data();
    for (const auto& row : rows) {
        std::ranges::fill(line, 0.0F);
        float* sums = line.data();
        const float* in = source.data() + row.first * rowLength;
        for (const float weight : row.weights) {
            // Without the vector's checks, the compiler takes four samples at a time.
            for (std::size_t i = 0; i < rowLength; ++i) sums[i] += weight * in[i];
            in += rowLength;
        }
        for (const auto& column : columns) {
            const float* sample = line.data() + std::size_t{3} * column.first;
            std::array<float, 3> pixel{}; // side by side, or each addition would wait for the one before
            for (const float weight : column.weights)
                for (float& sum : pixel) sum += weight * *sample++;
            for (const float sum : pixel)
                *out++ = static_cast<std::uint8_t>(std::clamp(std::lround(sum), 0L, 255L));
        }
    }
    return canvas;
}

} // namespace lumisort::similarity
