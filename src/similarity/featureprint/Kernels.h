#pragma once

#include <hwy/aligned_allocator.h>

#include <cstddef>
#include <span>

/// The two kinds of convolution that nearly all the time goes into, in the machine's widest vectors. A pixel
/// is a run of floats, one per channel. Sums always run in the same order, so results do not depend on how
/// the work is cut into calls.
namespace lumisort::similarity::kernels {

using Floats = hwy::AlignedFreeUniquePtr<float[]>;
Floats allocateZeroed(std::size_t count);

enum class Activation { none, relu6 };

/// A 1 × 1 convolution, its weights in the order in which the kernel of this machine reads them.
struct Pointwise {
    std::size_t in = 0;
    std::size_t out = 0;
    Activation activation = Activation::none;
    Floats packed;
    Floats bias;
};

/// Packs weights [out][in].
Pointwise packPointwise(std::span<const float> weights, std::span<const float> bias, Activation activation);

/// out[i] = activation(weights · in[i] + bias) + residual[i]; `residual` may be empty. At least four pixels,
/// whose outputs overlap neither each other nor any input. Pixels of `out` and `residual` are aligned and
/// have room for roundUpTo(out, pixelAlignment) floats, of which those past `out` become 0 where the
/// residual's are.
void pointwise(const Pointwise& layer, std::span<const float* const> in,
               std::span<const float* const> residual, std::span<float* const> out);

/// A 3 × 3 convolution of each channel, followed by ReLU6.
struct Depthwise {
    std::size_t channels = 0; ///< a multiple of pixelAlignment
    std::size_t stride = 1;
    Floats weights; ///< [3][3][channels]
    Floats bias;
};

/// One row of `columns` (a multiple of 7) output pixels. rows[i] is the leftmost pixel that the i-th row of
/// the filter touches; pixels follow each other without a gap.
void depthwiseRow(const Depthwise& layer, const float* const (&rows)[3], std::size_t columns, float* out);

/// Floats in the widest vector that the kernels use; the distance of stored pixels is a multiple of it.
inline constexpr std::size_t pixelAlignment = 16;

} // namespace lumisort::similarity::kernels
