#include "similarity/visual/PrintSketch.h"

#include "platform/tasks/OrderedWorkers.h"
#include "similarity/visual/PrincipalAxes.h"

#include <algorithm>
#include <cmath>

namespace lumisort::similarity {
namespace {

// Rounding, with u = 2⁻²⁴ and sums in any order. All of it only makes pairs be looked at in vain.
//
// A product with an axis is a sum of 384 terms: with the axis rounded to float it is off by at most
// 385 u = 2.3e-5, the 63 of them together by √63 · 2.3e-5 = 1.85e-4. Hence the part of a scalar product that
// lies along the axes is off by at most twice that, and so is the squared length of a print along the axes.
constexpr float alongAxes = 3.7e-4F;
/// The squared length of a print is off from 1 by the tolerance and by its own sum.
constexpr float lengthError = PrintSketches::unitTolerance + 2.3e-5F;
/// Added to the squared length of the rest, so that it is never too short; a sum of 64 terms.
constexpr float restSlack = alongAxes + lengthError + 4e-6F;
/// What a product of sketches may lack: the part along the axes, the two lengths, its own sum of 64 terms,
/// and the rounding of the reported distance (half of 384 u, relative, of a distance up to 2).
constexpr float productSlack = alongAxes + lengthError + 4e-6F + 4.6e-5F;

constexpr std::size_t printsPerTask = 512;

} // namespace

PrintSketches::PrintSketches(std::span<const std::shared_ptr<const FeaturePrint>> prints, int width,
                             const std::stop_token& stop)
    : sketches_(prints.size()) {
    std::vector<FeaturePrint> axes(sketchLength - 1);
    std::ranges::transform(principalAxes(prints, axes.size(), stop), axes.begin(), [](const PrintAxis& axis) {
        FeaturePrint rounded;
        std::ranges::transform(axis, rounded.values.begin(), [](double x) { return static_cast<float>(x); });
        return rounded;
    });

    const std::size_t taskCount = (prints.size() + printsPerTask - 1) / printsPerTask;
    const auto areUnit = tasks::orderedWorkers(
        taskCount, width,
        [&](std::size_t task, const std::stop_token&) {
            const std::size_t end = std::min(prints.size(), (task + 1) * printsPerTask);
            bool allUnit = true;
            for (std::size_t i = task * printsPerTask; i < end; ++i) {
                PrintSketch sketch =
                    projectPrint(*prints[i], std::span<const FeaturePrint, sketchLength - 1>(axes));
                float& rest = sketch.back();
                // Written so that a length that is not a number fails as well.
                allUnit = allUnit && std::abs(rest - 1.0F) <= unitTolerance;
                rest = 1.0F;
                for (std::size_t k = 0; k + 1 < sketchLength; ++k) rest -= sketch[k] * sketch[k];
                rest = std::sqrt(std::max(rest, 0.0F) + restSlack);
                sketches_[i] = sketch;
            }
            return allUnit;
        },
        [](std::size_t) {}, stop);
    valid_ = std::ranges::all_of(areUnit, [](bool unit) { return unit; });
}

float PrintSketches::leastProduct(float radius) {
    return 1.0F - radius * radius / 2.0F - productSlack;
}

} // namespace lumisort::similarity
