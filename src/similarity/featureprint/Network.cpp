#include "similarity/featureprint/Network.h"

#include "similarity/featureprint/Architecture.h"

#include <algorithm>
#include <cstddef>

namespace lumisort::similarity {

namespace {

using architecture::blocks;
using architecture::inputChannels;
using architecture::inputSide;

/// Distance between neighbouring pixels of a stored map.
constexpr int pitch(int channels) {
    constexpr int alignment = kernels::pixelAlignment;
    return (channels + alignment - 1) / alignment * alignment;
}

/// Output rows that a block computes at a time: the 1 × 1 kernels want some 28 pixels, the caches want few.
constexpr int rowsAtOnce(const architecture::Block& block) {
    return std::max(1, 28 / block.outSide());
}

/// Rows of the widened map under the filters of those output rows.
constexpr int windowRows(const architecture::Block& block) {
    return (rowsAtOnce(block) - 1) * block.stride + 3;
}

/// A row of the widened map, with a pixel of zeros on either side.
constexpr int windowPitch(const architecture::Block& block) {
    return (block.side + 2) * pitch(block.hidden);
}

/// The 3 × 3 patches under the first convolution are read from a buffer that holds, for each column of the
/// picture, the pixels of three rows: each patch is then 27 floats in a row, and neighbours share their
/// common column. One more column stays zero.
constexpr int patchColumn = 3 * inputChannels;
constexpr int patchPitch = patchColumn * (inputSide + 1);

kernels::Floats allocateLargest(auto measure) {
    int largest = 0;
    for (const architecture::Block& block : blocks) largest = std::max(largest, measure(block));
    return kernels::allocateZeroed(largest);
}

/// From [out][y][x][channel] to the order of a patch, [out][x][y][channel].
std::vector<float> inPatchOrder(const std::vector<float>& weights) {
    constexpr std::size_t channels = inputChannels;
    std::vector<float> result(weights.size());
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const std::size_t channel = i % channels, x = i / channels % 3, y = i / channels / 3 % 3;
        result[i / channels / 9 * 9 * channels + (x * 3 + y) * channels + channel] = weights[i];
    }
    return result;
}

kernels::Depthwise depthwise(const Layer& layer) {
    kernels::Depthwise result{layer.shape.out, layer.shape.stride,
                              kernels::allocateZeroed(layer.weights.size()),
                              kernels::allocateZeroed(layer.bias.size())};
    std::ranges::copy(layer.weights, result.weights.get());
    std::ranges::copy(layer.bias, result.bias.get());
    return result;
}

/// One block of one run: a window of the widened map slides down, and each few rows of it become output rows
/// before they leave the nearest caches.
class BlockRun {
public:
    BlockRun(const architecture::Block& shape, const Network::Block& layers, NetworkBuffers& buffers,
             const float* input, float* output)
        : shape_(shape), layers_(layers), buffers_(buffers), input_(input), output_(output) {}

    void run() {
        clearWindowSides();
        const int rows = rowsAtOnce(shape_);
        int widened = 0;
        for (int y = 0; y < shape_.outSide(); y += rows) {
            const int end = std::min(shape_.side, firstUnder(y) + windowRows(shape_));
            widen(widened, end);
            widened = end;
            for (int row = 0; row < rows; ++row) filter(y + row, row);
            narrow(y, rows);
        }
    }

private:
    /// The first row under the filter of an output row. The filters of stride 2 reach over the lower and
    /// right border only, as their training had it (TensorFlow's "SAME" on even sizes).
    int firstUnder(int outputRow) const { return outputRow * shape_.stride - (shape_.stride == 1 ? 1 : 0); }

    float* windowRow(int y) const {
        return buffers_.window.get() + y % windowRows(shape_) * windowPitch(shape_);
    }

    void clearWindowSides() const {
        for (int y = 0; y < windowRows(shape_); ++y) {
            std::fill_n(windowRow(y), pitch(shape_.hidden), 0.0f);
            std::fill_n(windowRow(y) + windowPitch(shape_) - pitch(shape_.hidden), pitch(shape_.hidden),
                        0.0f);
        }
    }

    void widen(int first, int end) const {
        if (first == end) return; // the rows for the last filters are there already
        const bool fromPicture = shape_.in == inputChannels;
        const int step = fromPicture ? 2 * patchColumn : pitch(shape_.in);
        const float** in = buffers_.in.get();
        float** out = buffers_.out.get();
        for (int y = first; y < end; ++y) {
            const float* const from = fromPicture ? patches(y) : input_ + y * shape_.side * pitch(shape_.in);
            for (int x = 0; x < shape_.side; ++x) {
                *in++ = from + x * step;
                *out++ = windowRow(y) + (x + 1) * pitch(shape_.hidden);
            }
        }
        const std::size_t pixels = (end - first) * shape_.side;
        kernels::pointwise(layers_.widen, {buffers_.in.get(), pixels}, {}, {buffers_.out.get(), pixels});
    }

    /// Rearranges the three rows of the picture under a row of the first convolution.
    const float* patches(int y) const {
        float* const patches = buffers_.patches.get() + y % windowRows(shape_) * patchPitch;
        for (int i = 0; i < 3; ++i) {
            const int row = 2 * y + i;
            const float* const pixels = row < inputSide
                                            ? buffers_.picture.get() + row * inputSide * inputChannels
                                            : buffers_.zeros.get();
            for (int x = 0; x < inputSide; ++x)
                std::copy_n(pixels + x * inputChannels, inputChannels,
                            patches + x * patchColumn + i * inputChannels);
        }
        return patches;
    }

    void filter(int outputRow, int slot) const {
        const float* rows[3];
        for (int i = 0; i < 3; ++i) {
            const int y = firstUnder(outputRow) + i;
            const float* const row = y < 0 || y >= shape_.side ? buffers_.zeros.get() : windowRow(y);
            rows[i] = row + (shape_.stride == 1 ? 0 : pitch(shape_.hidden));
        }
        kernels::depthwiseRow(layers_.filter, rows, shape_.outSide(), filteredPixel(slot * shape_.outSide()));
    }

    void narrow(int firstRow, int rows) const {
        const std::size_t pixels = rows * shape_.outSide();
        for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
            const std::size_t at = (firstRow * shape_.outSide() + pixel) * pitch(shape_.out);
            buffers_.in[pixel] = filteredPixel(pixel);
            buffers_.residual[pixel] = shape_.residual ? input_ + at : nullptr;
            buffers_.out[pixel] = output_ + at;
        }
        kernels::pointwise(layers_.narrow, {buffers_.in.get(), pixels},
                           {buffers_.residual.get(), shape_.residual ? pixels : 0},
                           {buffers_.out.get(), pixels});
    }

    float* filteredPixel(std::size_t pixel) const {
        return buffers_.filtered.get() + pixel * pitch(shape_.hidden);
    }

    const architecture::Block& shape_;
    const Network::Block& layers_;
    NetworkBuffers& buffers_;
    const float* input_;
    float* output_;
};

} // namespace

NetworkBuffers::NetworkBuffers()
    : picture(kernels::allocateZeroed(inputSide * inputSide * inputChannels)),
      patches(kernels::allocateZeroed(windowRows(blocks.front()) * patchPitch)),
      window(allocateLargest([](const auto& block) { return windowRows(block) * windowPitch(block); })),
      zeros(allocateLargest([](const auto& block) { return windowPitch(block); })),
      filtered(allocateLargest(
          [](const auto& block) { return rowsAtOnce(block) * block.outSide() * pitch(block.hidden); })) {
    for (kernels::Floats& map : maps)
        map = allocateLargest(
            [](const auto& block) { return block.outSide() * block.outSide() * pitch(block.out); });
    int pixels = 0;
    for (const auto& block : blocks) pixels = std::max(pixels, windowRows(block) * block.side);
    in = std::make_unique<const float*[]>(pixels);
    residual = std::make_unique<const float*[]>(pixels);
    out = std::make_unique<float*[]>(pixels);
}

Network::Network(const Weights& weights) {
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const Layer& widen = weights.layers[3 * i];
        const Layer& narrow = weights.layers[3 * i + 2];
        const bool first = widen.shape.kind == LayerKind::full3x3;
        blocks_.push_back({kernels::packPointwise(first ? inPatchOrder(widen.weights) : widen.weights,
                                                  widen.bias, kernels::Activation::relu6),
                           depthwise(weights.layers[3 * i + 1]),
                           kernels::packPointwise(narrow.weights, narrow.bias, kernels::Activation::none)});
    }
}

std::span<const float> Network::run(NetworkBuffers& buffers) const {
    const float* input = buffers.picture.get();
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        float* const output = buffers.maps[i % 2].get();
        BlockRun(blocks[i], blocks_[i], buffers, input, output).run();
        input = output;
    }
    return {input,
            std::size_t{architecture::outputSide * architecture::outputSide * architecture::outputChannels}};
}

} // namespace lumisort::similarity
