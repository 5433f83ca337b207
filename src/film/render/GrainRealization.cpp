#include "film/render/GrainRealization.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace lumisort::film {

namespace {

/// Standard normal numbers from a counter: the SplitMix64 generator (Steele, Lea and Flood, OOPSLA 2014) and
/// the Box–Muller transform.
class SpatialRandom {
public:
    explicit SpatialRandom(std::uint64_t state) : state_(state) {}

    double normal() {
        const double u1 = uniform(), u2 = uniform();
        return std::sqrt(-2 * std::log(u1)) * std::cos(2 * std::numbers::pi * u2);
    }

private:
    double uniform() {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        z ^= z >> 31;
        return (static_cast<double>(z >> 11) + 0.5) * 0x1p-53;
    }

    std::uint64_t state_;
};

} // namespace

GrainRealization::GrainRealization(int modeCount, std::uint32_t seed, double correlation, bool monochrome) {
    SpatialRandom random((std::uint64_t{0x9E3779B9} << 32) + seed);
    const double share = std::min(std::max(correlation, 0.0), 1.0);
    const double common = std::sqrt(share), own = std::sqrt(1 - share);
    for (int mode = 0; mode < modeCount; ++mode) {
        const double sharedCosine = random.normal(), sharedSine = random.normal();
        auto& cosines = cosine.emplace_back();
        auto& sines = sine.emplace_back();
        for (std::size_t layer = 0; layer < 3; ++layer) {
            // Drawn for a monochrome field as well: the waves of both kinds then share their amplitudes.
            const double ownCosine = random.normal(), ownSine = random.normal();
            cosines[layer] = monochrome ? sharedCosine : common * sharedCosine + own * ownCosine;
            sines[layer] = monochrome ? sharedSine : common * sharedSine + own * ownSine;
        }
    }
}

} // namespace lumisort::film
