#include "similarity/visual/PrintMatching.h"

#include "platform/tasks/Cancellation.h"
#include "platform/tasks/OrderedWorkers.h"
#include "similarity/visual/AnchorSketchIndex.h"
#include "similarity/visual/VisualScanError.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace lumisort::similarity {
namespace {

/// Items that one worker searches for at once; anchors pass through its cache once for all of them.
constexpr int itemsPerSearch = 64;
/// Items searched for before the anchors among them are known; those are searched again, one item at a time.
constexpr int batchSize = 8 * itemsPerSearch;

/// Fewer prints are compared sooner than their principal axes are found.
constexpr std::size_t fewestPrints = 512;

using Prints = std::span<const std::shared_ptr<const FeaturePrint>>;

std::vector<AnchorMatch> matchSketched(Prints prints, const PrintSketches& sketches, float radius, int width,
                                       const GroupingProgress& progress, const std::stop_token& stop,
                                       std::atomic<std::int64_t>& computed) {
    const int count = static_cast<int>(prints.size());
    std::vector<AnchorMatch> result;
    result.reserve(prints.size());
    AnchorSketchIndex anchors(prints, sketches);
    for (int begin = 0; begin < count; begin += batchSize) {
        const int end = std::min(begin + batchSize, count);
        auto candidates = tasks::orderedWorkers(
            static_cast<std::size_t>((end - begin + itemsPerSearch - 1) / itemsPerSearch), width,
            [&](std::size_t task, const std::stop_token& inner) {
                const int first = begin + static_cast<int>(task) * itemsPerSearch;
                std::vector<std::optional<Neighbour>> best(
                    static_cast<std::size_t>(std::min(itemsPerSearch, end - first)));
                computed += anchors.improve(best, first, 0, radius, inner);
                return best;
            },
            [](std::size_t) {}, stop);

        const std::size_t known = anchors.size();
        for (int item = begin; item < end; ++item) {
            const auto offset = static_cast<std::size_t>(item - begin);
            auto& best = candidates[offset / itemsPerSearch][offset % itemsPerSearch];
            computed += anchors.improve({&best, 1}, item, known, radius, stop);
            if (best) {
                result.push_back({.anchor = best->item, .distance = best->distance});
            } else {
                anchors.append(item);
                result.push_back({.anchor = item, .distance = 0});
            }
            progress(item + 1);
        }
    }
    return result;
}

} // namespace

float checkedDistance(const FeaturePrint& a, const FeaturePrint& b) {
    const float apart = distance(a, b);
    if (!std::isfinite(apart) || apart < 0)
        throw VisualScanError(VisualScanFailure::corruptFile, "Two feature prints cannot be compared.");
    return apart;
}

std::vector<AnchorMatch> matchPrints(std::span<const std::shared_ptr<const FeaturePrint>> prints,
                                     float radius, int width, const GroupingProgress& progress,
                                     const std::stop_token& stop, std::int64_t* distances) {
    std::atomic<std::int64_t> computed = 0;
    auto result = [&] {
        if (prints.size() >= fewestPrints) {
            const PrintSketches sketches(prints, width, stop);
            if (sketches.valid())
                return matchSketched(prints, sketches, radius, width, progress, stop, computed);
        }
        const auto between = [&](int i, int j) {
            computed.fetch_add(1, std::memory_order_relaxed);
            return checkedDistance(*prints[static_cast<std::size_t>(i)],
                                   *prints[static_cast<std::size_t>(j)]);
        };
        return AnchorGrouping::matches(static_cast<int>(prints.size()), radius, width, between, progress,
                                       stop);
    }();
    if (distances) *distances = computed;
    return result;
}

} // namespace lumisort::similarity
