#include "film/optics/SigmoidKernel.h"

#include "film/optics/Invariant.h"

#include <algorithm>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "film/optics/SigmoidKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumisort::film::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// No MulAdd anywhere: it rounds once where the plain loop rounds twice.

void evaluateLanes(std::span<const LinearRgb> weights, const double* HWY_RESTRICT tSquared,
                   const double* HWY_RESTRICT t, const SigmoidKernel::Candidates& candidates,
                   SigmoidKernel::Evaluations& evaluations) {
    const hn::CappedTag<double, SigmoidKernel::lanes> d;
    const auto half = hn::Set(d, 0.5);
    const auto one = hn::Set(d, 1.0);
    for (std::size_t lane = 0; lane < SigmoidKernel::lanes; lane += hn::Lanes(d)) {
        const auto c0 = hn::Load(d, candidates.c[0] + lane);
        const auto c1 = hn::Load(d, candidates.c[1] + lane);
        const auto c2 = hn::Load(d, candidates.c[2] + lane);
        auto r = hn::Zero(d), g = r, b = r;
        auto r0 = r, g0 = r, b0 = r, r1 = r, g1 = r, b1 = r, r2 = r, g2 = r, b2 = r;
        for (std::size_t i = 0; i < weights.size(); ++i) {
            const auto q0 = hn::Set(d, tSquared[i]);
            const auto q1 = hn::Set(d, t[i]);
            const auto z = hn::Add(hn::Add(hn::Mul(c0, q0), hn::Mul(c1, q1)), c2);
            const auto h = hn::Sqrt(hn::Add(one, hn::Mul(z, z)));
            const auto value = hn::Add(hn::Div(hn::Mul(half, z), h), half);
            const auto slope = hn::Div(half, hn::Mul(hn::Mul(h, h), h));
            const auto add = [&](double weight, auto& rgb, auto& by0, auto& by1, auto& by2) {
                const auto w = hn::Set(d, weight);
                const auto ws = hn::Mul(w, slope);
                rgb = hn::Add(rgb, hn::Mul(w, value));
                by0 = hn::Add(by0, hn::Mul(ws, q0));
                by1 = hn::Add(by1, hn::Mul(ws, q1));
                by2 = hn::Add(by2, ws);
            };
            add(weights[i][0], r, r0, r1, r2);
            add(weights[i][1], g, g0, g1, g2);
            add(weights[i][2], b, b0, b1, b2);
        }
        const auto store = [&](double(*out)[SigmoidKernel::lanes], auto x, auto y, auto z) {
            hn::Store(x, d, out[0] + lane);
            hn::Store(y, d, out[1] + lane);
            hn::Store(z, d, out[2] + lane);
        };
        store(evaluations.rgb, r, g, b);
        store(evaluations.derivatives[0], r0, g0, b0);
        store(evaluations.derivatives[1], r1, g1, b1);
        store(evaluations.derivatives[2], r2, g2, b2);
    }
}

// One vector holds neighbouring wavelengths here.
void reflectanceOf(const Vector3& c, const double* HWY_RESTRICT tSquared, const double* HWY_RESTRICT t,
                   std::span<double> out) {
    const hn::CappedTag<double, SigmoidKernel::lanes> d;
    const auto half = hn::Set(d, 0.5);
    const auto one = hn::Set(d, 1.0);
    const auto c0 = hn::Set(d, c[0]);
    const auto c1 = hn::Set(d, c[1]);
    const auto c2 = hn::Set(d, c[2]);
    const auto valuesAt = [&](std::size_t i) {
        const auto z =
            hn::Add(hn::Add(hn::Mul(c0, hn::LoadU(d, tSquared + i)), hn::Mul(c1, hn::LoadU(d, t + i))), c2);
        const auto h = hn::Sqrt(hn::Add(one, hn::Mul(z, z)));
        return hn::Add(hn::Div(hn::Mul(half, z), h), half);
    };
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= out.size(); i += hn::Lanes(d)) hn::StoreU(valuesAt(i), d, out.data() + i);
    if (i == out.size()) return;
    // A masked store would also write behind the end on processors that blend.
    alignas(64) double last[SigmoidKernel::lanes];
    hn::Store(valuesAt(i), d, last);
    std::copy_n(last, out.size() - i, out.data() + i);
}

} // namespace lumisort::film::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumisort::film {

HWY_EXPORT(evaluateLanes);
HWY_EXPORT(reflectanceOf);

SigmoidKernel::SigmoidKernel(std::vector<LinearRgb> weights, std::span<const double> t)
    : weights_(std::move(weights)), t_(t.begin(), t.end()) {
    require(weights_.size() == t_.size(), "a spectral fit has weights for other wavelengths");
    t_.resize((t_.size() + lanes - 1) / lanes * lanes);
    for (const double position : t_) tSquared_.push_back(position * position);
}

void SigmoidKernel::evaluate(const Candidates& candidates, Evaluations& evaluations) const {
    HWY_DYNAMIC_DISPATCH(evaluateLanes)(weights_, tSquared_.data(), t_.data(), candidates, evaluations);
}

void SigmoidKernel::reflectance(const Vector3& c, std::span<double> out) const {
    require(out.size() == weights_.size(), "a reflectance has another number of wavelengths");
    HWY_DYNAMIC_DISPATCH(reflectanceOf)(c, tSquared_.data(), t_.data(), out);
}

} // namespace lumisort::film
#endif
