#include "Reference.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace lumisort::similarity::reference {

namespace {

Map blank(int side, int channels) {
    return {side, channels, std::vector<double>(std::size_t{1} * side * side * channels)};
}

/// Output size ⌈side ÷ stride⌉; the padding is halved and its odd pixel goes below and to the right.
Map convolve(const Layer& layer, const Map& in, bool relu6) {
    const auto [kind, channels, out, stride] = layer.shape;
    const int kernel = kind == LayerKind::pointwise ? 1 : 3;
    Map result = blank((in.side + stride - 1) / stride, out);
    const int before = std::max(0, (result.side - 1) * stride + kernel - in.side) / 2;
    for (int y = 0; y < result.side; ++y)
        for (int x = 0; x < result.side; ++x)
            for (int o = 0; o < out; ++o) {
                double sum = layer.bias[o];
                for (int ky = 0; ky < kernel; ++ky)
                    for (int kx = 0; kx < kernel; ++kx) {
                        const int iy = y * stride + ky - before, ix = x * stride + kx - before;
                        if (iy < 0 || ix < 0 || iy >= in.side || ix >= in.side) continue;
                        if (kind == LayerKind::depthwise3x3) {
                            sum += layer.weights[(ky * 3 + kx) * out + o] * in.at(iy, ix, o);
                            continue;
                        }
                        const float* const weights =
                            &layer.weights[((o * kernel + ky) * kernel + kx) * channels];
                        for (int c = 0; c < channels; ++c) sum += weights[c] * in.at(iy, ix, c);
                    }
                result.at(y, x, o) = relu6 ? std::clamp(sum, 0.0, 6.0) : sum;
            }
    return result;
}

} // namespace

std::vector<double> areaMeans(const images::Bitmap& source, int width, int height) {
    std::vector<double> result;
    const double stepX = static_cast<double>(source.width()) / width,
                 stepY = static_cast<double>(source.height()) / height;
    const auto shared = [](double begin, double end, int pixel) {
        return std::max(0.0, std::min(end, pixel + 1.0) - std::max(begin, pixel + 0.0));
    };
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double left = x * stepX, right = left + stepX, top = y * stepY, bottom = top + stepY;
            double means[3] = {};
            for (int row = static_cast<int>(top); row < std::min(bottom, source.height() + 0.0); ++row)
                for (int column = static_cast<int>(left); column < std::min(right, source.width() + 0.0);
                     ++column) {
                    const double area =
                        shared(top, bottom, row) * shared(left, right, column) / (stepX * stepY);
                    const std::uint8_t* const pixel =
                        &source.rgba()[4 * (std::size_t{1} * row * source.width() + column)];
                    const double alpha = pixel[3] / 255.0;
                    for (int c = 0; c < 3; ++c) means[c] += area * (pixel[c] * alpha + 255 * (1 - alpha));
                }
            result.insert(result.end(), means, means + 3);
        }
    return result;
}

Map input(const images::Bitmap& picture) {
    Map map{224, 3, areaMeans(picture, 224, 224)};
    for (double& value : map.values) value = value / 127.5 - 1;
    return map;
}

Map run(const Weights& weights, const Map& input) {
    Map map = input;
    for (std::size_t i = 0; i < weights.layers.size(); i += 3) {
        const Map before = map;
        map = convolve(weights.layers[i], map, true);
        map = convolve(weights.layers[i + 1], map, true);
        map = convolve(weights.layers[i + 2], map, false);
        if (map.channels == before.channels && map.side == before.side)
            for (std::size_t j = 0; j < map.values.size(); ++j) map.values[j] += before.values[j];
    }
    return map;
}

std::vector<double> print(const Map& last) {
    std::vector<double> result(4 * last.channels);
    for (int y = 0; y < last.side; ++y)
        for (int x = 0; x < last.side; ++x)
            for (int c = 0; c < last.channels; ++c)
                result[(2 * (y / 7) + x / 7) * last.channels + c] += last.at(y, x, c) / 49;
    double squares = 0;
    for (const double value : result) squares += value * value;
    for (double& value : result) value /= std::sqrt(squares);
    return result;
}

} // namespace lumisort::similarity::reference

namespace lumisort::test {

images::Bitmap picture(int width, int height, unsigned seed, bool transparent) {
    std::mt19937 random(seed);
    images::Bitmap result(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint8_t* const pixel = &result.rgba()[4 * (std::size_t{1} * y * width + x)];
            const auto noise = static_cast<unsigned>(random() >> 24);
            const bool inside = (x * 7 / width + y * 5 / height + seed) % 3 == 0;
            pixel[0] = static_cast<std::uint8_t>(inside ? 255 * x / width : noise / 4 + 40);
            pixel[1] = static_cast<std::uint8_t>(inside ? noise / 2 : 255 * y / height);
            pixel[2] = static_cast<std::uint8_t>((x / 3 + y / 5 + seed * 37) % 256);
            pixel[3] = static_cast<std::uint8_t>(transparent ? 255 * y / height : 255);
        }
    return result;
}

} // namespace lumisort::test
