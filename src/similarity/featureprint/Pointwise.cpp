#include "similarity/featureprint/Kernels.h"

#include <algorithm>
#include <cassert>

// Vectors of a length that the compiler does not know cannot stand in arrays, as the tiles below want it.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "similarity/featureprint/Pointwise.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumisort::similarity::kernels {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using Tag = hn::CappedTag<float, pixelAlignment>;
using Vector = hn::Vec<Tag>;
constexpr std::size_t lanes = hn::MaxLanes(Tag());

/// A tile of pixels × vectors of output channels stays in registers while the sum runs over the input
/// channels. Its size is bounded by the registers (16 on x86 before AVX-512, else 32): one for each of its
/// sums, one for each vector of weights, one for the input.
constexpr bool manyRegisters = HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX3_DL || HWY_TARGET == HWY_NEON;
constexpr std::size_t tilePixels(std::size_t vectors) {
    if (manyRegisters) return 7;
    return vectors == 3 ? 4 : 6;
}

std::size_t panelVectors(std::size_t out) {
    const std::size_t vectors = hwy::DivCeil(out, lanes);
    return vectors % 3 == 0 ? 3 : vectors % 2 == 0 ? 2 : 1;
}

/// Packed weights: for each panel of output channels, for each input channel, the panel's weights.
Pointwise PackPointwise(std::span<const float> weights, std::span<const float> bias, Activation activation) {
    const std::size_t out = bias.size();
    const std::size_t in = weights.size() / out;
    const std::size_t width = panelVectors(out) * lanes;
    const std::size_t padded = hwy::RoundUpTo(out, width);
    Pointwise layer{in, out, activation, allocateZeroed(padded * in), allocateZeroed(padded)};
    std::ranges::copy(bias, layer.bias.get());
    for (std::size_t o = 0; o < out; ++o) {
        float* const panel = layer.packed.get() + o / width * width * in + o % width;
        for (std::size_t i = 0; i < in; ++i) panel[i * width] = weights[o * in + i];
    }
    return layer;
}

template <std::size_t Vectors>
HWY_INLINE void tile(const float* HWY_RESTRICT weights, const float* HWY_RESTRICT bias, std::size_t channels,
                     const float* const* HWY_RESTRICT in, const float* const* HWY_RESTRICT residual,
                     float* const* HWY_RESTRICT out, std::size_t offset, Activation activation) {
    constexpr std::size_t pixels = tilePixels(Vectors);
    const Tag tag;
    Vector sums[pixels][Vectors];
    const float* pixel[pixels];
    HWY_UNROLL(8)
    for (std::size_t p = 0; p < pixels; ++p) {
        pixel[p] = in[p];
        HWY_UNROLL(3)
        for (std::size_t v = 0; v < Vectors; ++v) sums[p][v] = hn::Load(tag, bias + v * lanes);
    }
    for (std::size_t c = 0; c < channels; ++c) {
        Vector row[Vectors];
        HWY_UNROLL(3)
        for (std::size_t v = 0; v < Vectors; ++v) row[v] = hn::Load(tag, weights + (c * Vectors + v) * lanes);
        HWY_UNROLL(8)
        for (std::size_t p = 0; p < pixels; ++p) {
            const Vector input = hn::Set(tag, pixel[p][c]);
            HWY_UNROLL(3)
            for (std::size_t v = 0; v < Vectors; ++v) sums[p][v] = hn::MulAdd(input, row[v], sums[p][v]);
        }
    }
    HWY_UNROLL(8)
    for (std::size_t p = 0; p < pixels; ++p) {
        HWY_UNROLL(3)
        for (std::size_t v = 0; v < Vectors; ++v) {
            Vector value = sums[p][v];
            const std::size_t at = offset + v * lanes;
            if (activation == Activation::relu6)
                value = hn::Min(hn::Max(value, hn::Zero(tag)), hn::Set(tag, 6.0f));
            if (residual) value = hn::Add(value, hn::Load(tag, residual[p] + at));
            hn::Store(value, tag, out[p] + at);
        }
    }
}

template <std::size_t Vectors>
void panels(const Pointwise& layer, std::span<const float* const> in, std::span<const float* const> residual,
            std::span<float* const> out) {
    constexpr std::size_t pixels = tilePixels(Vectors);
    constexpr std::size_t width = Vectors * lanes;
    assert(in.size() >= pixels);
    for (std::size_t offset = 0; offset < layer.out; offset += width) {
        const float* const weights = layer.packed.get() + offset * layer.in;
        for (std::size_t next = 0; next < in.size(); next += pixels) {
            // The last tile reaches back over pixels that are done, and writes the same numbers again.
            const std::size_t first = std::min(next, in.size() - pixels);
            tile<Vectors>(weights, layer.bias.get() + offset, layer.in, in.data() + first,
                          residual.empty() ? nullptr : residual.data() + first, out.data() + first, offset,
                          layer.activation);
        }
    }
}

void RunPointwise(const Pointwise& layer, std::span<const float* const> in,
                  std::span<const float* const> residual, std::span<float* const> out) {
    switch (panelVectors(layer.out)) {
    case 3:
        return panels<3>(layer, in, residual, out);
    case 2:
        return panels<2>(layer, in, residual, out);
    default:
        return panels<1>(layer, in, residual, out);
    }
}

} // namespace HWY_NAMESPACE
} // namespace lumisort::similarity::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumisort::similarity::kernels {

HWY_EXPORT(PackPointwise);
HWY_EXPORT(RunPointwise);

Floats allocateZeroed(std::size_t count) {
    Floats floats = hwy::AllocateAligned<float>(count);
    if (!floats) throw std::bad_alloc();
    std::fill_n(floats.get(), count, 0.0f);
    return floats;
}

Pointwise packPointwise(std::span<const float> weights, std::span<const float> bias, Activation activation) {
    return HWY_DYNAMIC_DISPATCH(PackPointwise)(weights, bias, activation);
}

void pointwise(const Pointwise& layer, std::span<const float* const> in,
               std::span<const float* const> residual, std::span<float* const> out) {
    HWY_DYNAMIC_DISPATCH(RunPointwise)(layer, in, residual, out);
}

} // namespace lumisort::similarity::kernels
#endif
