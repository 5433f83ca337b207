#pragma once

#include "similarity/visual/MetricIndex.h"

#include <algorithm>
#include <optional>
#include <ranges>
#include <stop_token>
#include <utility>
#include <vector>

namespace lumisort::similarity {

/// A growing set of items to search for the nearest one: trees of 1, 2, 4, 8 … items that merge as a binary
/// counter carries (J. L. Bentley and J. B. Saxe, 1980). An insertion builds at most one tree anew and leaves
/// the others alone. Any number of threads may search while none inserts.
class AnchorMetricIndex {
public:
    struct Block {
        std::vector<int> items; ///< in the order of insertion
        MetricIndex tree;
    };

    /// Throws tasks::Cancelled and what `distance` throws; the index is then as it was.
    template <ItemDistance Distance>
    void insert(int item, const Distance& distance, const std::stop_token& stop);

    /// As MetricIndex::nearest, over all items inserted.
    template <ItemDistance Distance>
    std::optional<Neighbour> nearest(int query, float radius, const Distance& distance,
                                     const std::stop_token& stop) const;

    /// Block k is empty or holds 2^k items.
    const std::vector<std::optional<Block>>& blocks() const { return blocks_; }

private:
    std::vector<std::optional<Block>> blocks_;
};

template <ItemDistance Distance>
void AnchorMetricIndex::insert(int item, const Distance& distance, const std::stop_token& stop) {
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

template <ItemDistance Distance>
std::optional<Neighbour> AnchorMetricIndex::nearest(int query, float radius, const Distance& distance,
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
