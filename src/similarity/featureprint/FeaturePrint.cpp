#include "similarity/featureprint/FeaturePrint.h"

#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "similarity/featureprint/FeaturePrint.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumisort::similarity::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

float SquaredDistance(const FeaturePrint& a, const FeaturePrint& b) {
    const hn::CappedTag<float, 16> tag;
    const std::size_t lanes = hn::Lanes(tag);
    static_assert(featurePrintLength % (4 * 16) == 0);
    // Four sums, because one would wait for its own last addition.
    auto sum0 = hn::Zero(tag), sum1 = sum0, sum2 = sum0, sum3 = sum0;
    const auto add = [&](auto& sum, std::size_t i) HWY_ATTR {
        const auto difference =
            hn::Sub(hn::Load(tag, a.values.data() + i), hn::Load(tag, b.values.data() + i));
        sum = hn::MulAdd(difference, difference, sum);
    };
    for (std::size_t i = 0; i < featurePrintLength; i += 4 * lanes) {
        add(sum0, i);
        add(sum1, i + lanes);
        add(sum2, i + 2 * lanes);
        add(sum3, i + 3 * lanes);
    }
    return hn::GetLane(hn::SumOfLanes(tag, hn::Add(hn::Add(sum0, sum1), hn::Add(sum2, sum3))));
}

} // namespace lumisort::similarity::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumisort::similarity {

HWY_EXPORT(SquaredDistance);

float distance(const FeaturePrint& a, const FeaturePrint& b) noexcept {
    return std::sqrt(HWY_DYNAMIC_DISPATCH(SquaredDistance)(a, b));
}

} // namespace lumisort::similarity
#endif
