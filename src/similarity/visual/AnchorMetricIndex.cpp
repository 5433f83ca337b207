#include "similarity/visual/AnchorMetricIndex.h"

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace lumisort::similarity {

void AnchorMetricIndex::insert(int item, const ItemDistance& distance, const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    std::vector<int> carry{item};
    std::size_t level = 0;
    for (; level < blocks_.size() && blocks_[level]; ++level) {
        tasks::checkCancelled(stop);
        std::vector<int> merged = blocks_[level]->items;
        merged.insert(merged.end(), carry.begin(), carry.end());
        carry = std::move(merged);
    }

    MetricIndex tree(carry, distance, stop);
    if (level == blocks_.size()) blocks_.emplace_back();
    std::fill_n(blocks_.begin(), level, std::nullopt);
    blocks_[level].emplace(std::move(carry), std::move(tree));
}

std::optional<Neighbour> AnchorMetricIndex::nearest(int query, float radius, const ItemDistance& distance,
                                                    const std::stop_token& stop) const {
    std::optional<Neighbour> best;
    for (const auto& block : std::views::reverse(blocks_)) {
        if (!block) continue;
        tasks::checkCancelled(stop);
        const auto found = block->tree.nearest(query, best ? best->distance : radius, distance, stop);
        if (found && (!best || found->beats(*best))) best = found;
    }
    return best;
}

} // namespace lumisort::similarity
