#pragma once

#include "platform/tasks/OrderedWorkers.h"
#include "similarity/visual/AnchorMetricIndex.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// The anchor that an item belongs to and how far it is from it; an anchor belongs to itself, at 0.
struct AnchorMatch {
    int anchor = 0;
    float distance = 0;

    friend bool operator==(const AnchorMatch&, const AnchorMatch&) = default;
};

/// Hears how many items have their match: 1, 2, 3 … up to the count, on the thread that called.
using GroupingProgress = std::function<void(int)>;

/// Grouping around anchors: every item belongs to the nearest anchor with a smaller number that is at most
/// `radius` away (of equally near ones to that with the smallest number), and becomes an anchor itself where
/// there is none. The matches, in item order, are those of one pass over the items, whatever the width.
struct AnchorGrouping {
    /// Items searched for at once. Anchors found in a batch are compared one by one until it ends, so that
    /// more would spread the search better and cost more comparisons.
    static constexpr int batchSize = 64;

    /// For any metric. Searches on tasks::threadCount(width) threads. Throws tasks::Cancelled, and what
    /// `distance` or `progress` throws.
    template <ItemDistance Distance>
    static std::vector<AnchorMatch> matches(int count, float radius, int width, const Distance& distance,
                                            const GroupingProgress& progress, const std::stop_token& stop);
};

template <ItemDistance Distance>
std::vector<AnchorMatch> AnchorGrouping::matches(int count, float radius, int width, const Distance& distance,
                                                 const GroupingProgress& progress,
                                                 const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    std::vector<AnchorMatch> result;
    result.reserve(static_cast<std::size_t>(std::max(count, 0)));
    AnchorMetricIndex index;
    for (int begin = 0; begin < count; begin += batchSize) {
        const int end = std::min(begin + batchSize, count);
        const auto candidates = tasks::orderedWorkers(
            static_cast<std::size_t>(end - begin), width,
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
