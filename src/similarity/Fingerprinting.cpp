#include "similarity/Fingerprinting.h"

#include "platform/images/Decoder.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumisort::similarity {

namespace {

using GreyImage = std::array<std::array<double, canvasSide>, canvasSide>;
using Coefficients = std::array<double, coefficientCount>;

/// What the lowest row and column of an orthonormal cosine transform are scaled by. One unit in the last
/// place below the double nearest to 1/√2; the literal decides.
constexpr double lowestFrequencyScale = 0.7071067811865475;

using CosineTable = std::array<std::array<double, canvasSide>, frequencySide>;

const CosineTable& cosines() {
    static const CosineTable table = [] {
        CosineTable entries{};
        for (int u = 0; u < frequencySide; ++u)
            for (int x = 0; x < canvasSide; ++x)
                entries[u][x] = std::cos(u * (2 * x + 1) * std::numbers::pi / (2 * canvasSide));
        return entries;
    }();
    return table;
}

GreyImage greyImage(const FingerprintCanvas& canvas) {
    GreyImage grey{};
    for (int y = 0; y < canvasSide; ++y)
        for (int x = 0; x < canvasSide; ++x)
            grey[y][x] = (0.299 * canvas.value(y, x, 0) + 0.587 * canvas.value(y, x, 1) +
                          0.114 * canvas.value(y, x, 2)) /
                         255;
    return grey;
}

double standardDeviation(const GreyImage& grey) {
    constexpr double count = canvasSide * canvasSide;
    double sum = 0;
    for (const auto& row : grey)
        for (const double value : row) sum += value;
    const double mean = sum / count;
    double squares = 0;
    for (const auto& row : grey)
        for (const double value : row) squares += (value - mean) * (value - mean);
    return std::sqrt(squares / count);
}

Coefficients lowFrequencies(const GreyImage& grey) {
    const CosineTable& cosine = cosines();
    std::array<std::array<double, frequencySide>, canvasSide> alongRows{};
    for (int y = 0; y < canvasSide; ++y)
        for (int u = 0; u < frequencySide; ++u)
            for (int x = 0; x < canvasSide; ++x) alongRows[y][u] += grey[y][x] * cosine[u][x];

    Coefficients coefficients{};
    for (int v = 0; v < frequencySide; ++v)
        for (int u = v == 0 ? 1 : 0; u < frequencySide; ++u) {
            double sum = 0;
            for (int y = 0; y < canvasSide; ++y) sum += alongRows[y][u] * cosine[v][y];
            if (u == 0 || v == 0) sum *= lowestFrequencyScale;
            coefficients[v * frequencySide + u - 1] = sum;
        }
    return coefficients;
}

std::vector<double> colorLayout(const FingerprintCanvas& canvas) {
    constexpr int cell = canvasSide / colourGridSide;
    constexpr double whiteSum = 255 * cell * cell;
    std::vector<double> colors;
    colors.reserve(colourValueCount);
    for (int top = 0; top < canvasSide; top += cell)
        for (int left = 0; left < canvasSide; left += cell)
            for (int channel = 0; channel < 3; ++channel) {
                int sum = 0;
                for (int y = top; y < top + cell; ++y)
                    for (int x = left; x < left + cell; ++x) sum += canvas.value(y, x, channel);
                colors.push_back(sum / whiteSum);
            }
    return colors;
}

std::uint64_t hashOf(const Coefficients& coefficients) {
    Coefficients sorted = coefficients;
    const auto middle = sorted.begin() + coefficientCount / 2;
    std::ranges::nth_element(sorted, middle);
    std::uint64_t hash = 0;
    for (std::size_t i = 0; i < coefficientCount; ++i)
        if (coefficients[i] > *middle) hash |= std::uint64_t{1} << i;
    return hash;
}

} // namespace

std::array<std::uint64_t, orientationCount>
orientationHashes(std::span<const double, coefficientCount> coefficients) {
    std::array<std::uint64_t, orientationCount> hashes{};
    for (std::size_t k = 0; k < orientationCount; ++k) {
        const auto orientation = hashOrder[k];
        Coefficients turned{};
        for (int row = 0; row < frequencySide; ++row)
            for (int column = row == 0 ? 1 : 0; column < frequencySide; ++column) {
                const int source =
                    swapsSides(orientation) ? frequencySide * column + row : frequencySide * row + column;
                const double value = coefficients[source - 1];
                turned[frequencySide * row + column - 1] =
                    negatesCoefficient(orientation, row, column) ? -value : value;
            }
        hashes[k] = hashOf(turned);
    }
    return hashes;
}

VisualFingerprint fingerprint(const FingerprintCanvas& canvas, double aspect) {
    const GreyImage grey = greyImage(canvas);
    const auto hashes = orientationHashes(lowFrequencies(grey));
    return {.hash = hashes.front(),
            .colors = colorLayout(canvas),
            .aspect = aspect,
            .deviation = standardDeviation(grey),
            .orientationHashes = {hashes.begin(), hashes.end()}};
}

VisualFingerprint fingerprint(const files::FileUrl& url, const std::stop_token& stop) {
    const images::Bitmap photo =
        images::decoder().thumbnail(url, fingerprintThumbnailSidePixels, images::Quality::rough, stop);
    return fingerprint(drawCanvas(photo), static_cast<double>(photo.width()) / photo.height());
}

} // namespace lumisort::similarity
