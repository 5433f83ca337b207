#pragma once

#include "platform/images/Bitmap.h"
#include "similarity/featureprint/Weights.h"

#include <hwy/targets.h>

#include <cstdint>
#include <vector>

/// The same arithmetic as the engine's, written out literally and in double precision.
namespace lumisort::similarity::reference {

/// Rows of pixels of channels, as the engine stores them, without gaps.
struct Map {
    int side = 0;
    int channels = 0;
    std::vector<double> values;

    double& at(int y, int x, int channel) {
        return values[(std::size_t{1} * y * side + x) * channels + channel];
    }
    double at(int y, int x, int channel) const { return const_cast<Map*>(this)->at(y, x, channel); }
};

/// width × height pixels of red, green and blue in 0…255: integrals of the source's pixels over white.
std::vector<double> areaMeans(const images::Bitmap& source, int width, int height);

/// The network's input for a picture, and its last map for an input.
Map input(const images::Bitmap& picture);
Map run(const Weights& weights, const Map& input);

/// The print as a vector of doubles.
std::vector<double> print(const Map& last);

} // namespace lumisort::similarity::reference

namespace lumisort::test {

/// A picture with shapes, gradients, texture and sharp edges up to its borders, another one for each seed.
images::Bitmap picture(int width, int height, unsigned seed, bool transparent = false);

/// Runs `body(name)` with each instruction set that this machine and this build know. A model's weights are
/// packed for one of them, so it must not outlive its round.
void forEachTarget(auto body) {
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().DeInit();
        body(hwy::TargetName(target));
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().DeInit();
}

} // namespace lumisort::test
