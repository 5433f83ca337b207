#include "similarity/visual/PrintSketch.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "similarity/visual/SketchKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumisort::similarity::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Two vectors for each of four sketches are eight sums, which every processor keeps in registers.
const hn::CappedTag<float, SketchBlock::width / 2> tag;

void CompareSketches(const std::array<const PrintSketch*, sketchTile>& sketches,
                     std::span<const SketchBlock> blocks, const std::array<float, sketchTile>& leastProducts,
                     std::uint16_t* HWY_RESTRICT masks) {
    const std::size_t lanes = hn::Lanes(tag);
    const float* HWY_RESTRICT sketch0 = sketches[0]->data();
    const float* HWY_RESTRICT sketch1 = sketches[1]->data();
    const float* HWY_RESTRICT sketch2 = sketches[2]->data();
    const float* HWY_RESTRICT sketch3 = sketches[3]->data();
    for (const SketchBlock& block : blocks) {
        std::array<std::uint16_t, sketchTile> bits{};
        for (std::size_t first = 0; first < SketchBlock::width; first += 2 * lanes) {
            auto a0 = hn::Zero(tag), a1 = a0, a2 = a0, a3 = a0, b0 = a0, b1 = a0, b2 = a0, b3 = a0;
            for (std::size_t k = 0; k < sketchLength; ++k) {
                const auto a = hn::Load(tag, block.values[k].data() + first);
                const auto b = hn::Load(tag, block.values[k].data() + first + lanes);
                const auto s0 = hn::Set(tag, sketch0[k]);
                a0 = hn::MulAdd(a, s0, a0);
                b0 = hn::MulAdd(b, s0, b0);
                const auto s1 = hn::Set(tag, sketch1[k]);
                a1 = hn::MulAdd(a, s1, a1);
                b1 = hn::MulAdd(b, s1, b1);
                const auto s2 = hn::Set(tag, sketch2[k]);
                a2 = hn::MulAdd(a, s2, a2);
                b2 = hn::MulAdd(b, s2, b2);
                const auto s3 = hn::Set(tag, sketch3[k]);
                a3 = hn::MulAdd(a, s3, a3);
                b3 = hn::MulAdd(b, s3, b3);
            }
            const auto collect = [&](std::size_t t, auto a, auto b) HWY_ATTR {
                const auto least = hn::Set(tag, leastProducts[t]);
                std::array<std::uint8_t, 8> low{}, high{}; // StoreMaskBits may write this much
                hn::StoreMaskBits(tag, hn::Ge(a, least), low.data());
                hn::StoreMaskBits(tag, hn::Ge(b, least), high.data());
                bits[t] =
                    static_cast<std::uint16_t>(bits[t] | (low[0] << first) | (high[0] << (first + lanes)));
            };
            collect(0, a0, b0);
            collect(1, a1, b1);
            collect(2, a2, b2);
            collect(3, a3, b3);
        }
        for (const std::uint16_t mask : bits) *masks++ = mask;
    }
}

void ProjectPrint(const FeaturePrint& print, std::span<const FeaturePrint, sketchLength - 1> axes,
                  PrintSketch& products) {
    const std::size_t lanes = hn::Lanes(tag);
    for (std::size_t axis = 0; axis < sketchLength; ++axis) {
        const float* HWY_RESTRICT along = (axis + 1 < sketchLength ? axes[axis] : print).values.data();
        auto sum = hn::Zero(tag);
        for (std::size_t i = 0; i < featurePrintLength; i += lanes)
            sum = hn::MulAdd(hn::Load(tag, print.values.data() + i), hn::Load(tag, along + i), sum);
        products[axis] = hn::GetLane(hn::SumOfLanes(tag, sum));
    }
}

} // namespace lumisort::similarity::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumisort::similarity {

HWY_EXPORT(CompareSketches);
HWY_EXPORT(ProjectPrint);

void compareSketches(const std::array<const PrintSketch*, sketchTile>& sketches,
                     std::span<const SketchBlock> blocks, const std::array<float, sketchTile>& leastProducts,
                     std::span<std::uint16_t> masks) noexcept {
    HWY_DYNAMIC_DISPATCH(CompareSketches)(sketches, blocks, leastProducts, masks.data());
}

PrintSketch projectPrint(const FeaturePrint& print,
                         std::span<const FeaturePrint, sketchLength - 1> axes) noexcept {
    PrintSketch products;
    HWY_DYNAMIC_DISPATCH(ProjectPrint)(print, axes, products);
    return products;
}

} // namespace lumisort::similarity
#endif
