#include "film/optics/TransmissionKernel.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "film/optics/TransmissionKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumisort::film::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// No MulAdd: it rounds once where the plain loop rounds twice.
void sumTransmissions(const TransmissionTables& tables, const Spectral<double>& second,
                      const Spectral<double>& third, TransmissionTables::Row& row) {
    const hn::CappedTag<double, 8> d;
    for (std::size_t level = 0; level < TransmissionTables::levels; level += hn::Lanes(d)) {
        auto red = hn::Zero(d), green = red, blue = red;
        for (std::size_t i = 0; i < spectralSampleCount; ++i) {
            auto light = hn::Load(d, tables.first[i].data() + level);
            light = hn::Mul(light, hn::Set(d, second[i]));
            light = hn::Mul(light, hn::Set(d, third[i]));
            light = hn::Mul(light, hn::Set(d, tables.base[i]));
            red = hn::Add(red, hn::Mul(hn::Set(d, tables.weights[i][0]), light));
            green = hn::Add(green, hn::Mul(hn::Set(d, tables.weights[i][1]), light));
            blue = hn::Add(blue, hn::Mul(hn::Set(d, tables.weights[i][2]), light));
        }
        hn::Store(red, d, row.sums[0].data() + level);
        hn::Store(green, d, row.sums[1].data() + level);
        hn::Store(blue, d, row.sums[2].data() + level);
    }
}

} // namespace lumisort::film::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumisort::film {

HWY_EXPORT(sumTransmissions);

void TransmissionTables::sumRow(std::size_t secondLevel, std::size_t thirdLevel, Row& row) const {
    HWY_DYNAMIC_DISPATCH(sumTransmissions)(*this, second[secondLevel], third[thirdLevel], row);
}

} // namespace lumisort::film
#endif
