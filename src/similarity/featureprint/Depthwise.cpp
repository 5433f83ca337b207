#include "similarity/featureprint/Kernels.h"

// Vectors of a length that the compiler does not know cannot stand in arrays, as the sums below want it.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "similarity/featureprint/Depthwise.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumisort::similarity::kernels {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Seven neighbouring output pixels share each load of a weight, and seven divides every map of the network.
template <std::size_t Stride>
void depthwiseRow(const Depthwise& layer, const float* const (&rows)[3], std::size_t columns,
                  float* HWY_RESTRICT out) {
    constexpr std::size_t pixels = 7;
    const hn::CappedTag<float, pixelAlignment> tag;
    using Vector = hn::Vec<decltype(tag)>;
    const std::size_t channels = layer.channels;
    for (std::size_t column = 0; column < columns; column += pixels) {
        for (std::size_t c = 0; c < channels; c += hn::Lanes(tag)) {
            Vector sums[pixels];
            HWY_UNROLL(8)
            for (std::size_t p = 0; p < pixels; ++p) sums[p] = hn::Load(tag, layer.bias.get() + c);
            for (std::size_t y = 0; y < 3; ++y) {
                const float* const in = rows[y] + column * Stride * channels + c;
                const float* const weights = layer.weights.get() + 3 * y * channels + c;
                HWY_UNROLL(3)
                for (std::size_t x = 0; x < 3; ++x) {
                    const Vector weight = hn::Load(tag, weights + x * channels);
                    HWY_UNROLL(8)
                    for (std::size_t p = 0; p < pixels; ++p)
                        sums[p] =
                            hn::MulAdd(hn::Load(tag, in + (p * Stride + x) * channels), weight, sums[p]);
                }
            }
            HWY_UNROLL(8)
            for (std::size_t p = 0; p < pixels; ++p)
                hn::Store(hn::Min(hn::Max(sums[p], hn::Zero(tag)), hn::Set(tag, 6.0f)), tag,
                          out + (column + p) * channels + c);
        }
    }
}

void RunDepthwise(const Depthwise& layer, const float* const (&rows)[3], std::size_t columns, float* out) {
    if (layer.stride == 1)
        depthwiseRow<1>(layer, rows, columns, out);
    else
        depthwiseRow<2>(layer, rows, columns, out);
}

} // namespace HWY_NAMESPACE
} // namespace lumisort::similarity::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumisort::similarity::kernels {

HWY_EXPORT(RunDepthwise);

void depthwiseRow(const Depthwise& layer, const float* const (&rows)[3], std::size_t columns, float* out) {
    HWY_DYNAMIC_DISPATCH(RunDepthwise)(layer, rows, columns, out);
}

} // namespace lumisort::similarity::kernels
#endif
