#include "similarity/visual/AnchorGrouping.h"

#include "platform/tasks/Cancellation.h"
#include "platform/tasks/OrderedWorkers.h"
#include "similarity/visual/AnchorMetricIndex.h"

#include <algorithm>
#include <optional>

namespace lumisort::similarity {
namespace {

/// Items searched for at once. Anchors found in a batch are compared one by one until it ends, so that more
/// would spread the search better and cost more comparisons.
constexpr int batchSize = 64;

} // namespace

std::vector<AnchorMatch> AnchorGrouping::matches(int count, float radius, int concurrency,
                                                 const ItemDistance& distance,
                                                 const GroupingProgress& progress,
                                                 const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    std::vector<AnchorMatch> result;
    result.reserve(static_cast<std::size_t>(std::max(count, 0)));
    AnchorMetricIndex index;
    for (int begin = 0; begin < count; begin += batchSize) {
        const int end = std::min(begin + batchSize, count);
        const auto candidates = tasks::orderedWorkers(
            static_cast<std::size_t>(end - begin), concurrency,
            [&](std::size_t offset, const std::stop_token& inner) {
                return index.nearest(begin + static_cast<int>(offset), radius, distance, inner);
            },
            [](std::size_t) {}, stop);

        std::vector<int> newAnchors;
        for (int item = begin; item < end; ++item) {
            tasks::checkCancelled(stop);
            std::optional<Neighbour> best = candidates[static_cast<std::size_t>(item - begin)];
            for (const int anchor : newAnchors) {
                tasks::checkCancelled(stop);
                const Neighbour found{.item = anchor, .distance = distance(item, anchor)};
                if (found.distance <= radius && (!best || found.beats(*best))) best = found;
            }
            if (best) {
                result.push_back({.anchor = best->item, .distance = best->distance});
            } else {
                index.insert(item, distance, stop);
                newAnchors.push_back(item);
                result.push_back({.anchor = item, .distance = 0});
            }
            progress(item + 1);
        }
    }
    return result;
}

} // namespace lumisort::similarity
