#pragma once

#include "similarity/visual/MetricIndex.h"

#include <functional>
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
/// there is none. The matches, in item order, are those of one pass over the items, whatever the concurrency.
struct AnchorGrouping {
    /// For any metric. Searches on tasks::threadCount(concurrency) threads. Throws tasks::Cancelled, and what
    /// `distance` or `progress` throws.
    static std::vector<AnchorMatch> matches(int count, float radius, int concurrency,
                                            const ItemDistance& distance, const GroupingProgress& progress,
                                            const std::stop_token& stop);
};

} // namespace lumisort::similarity
