#include "similarity/visual/MetricIndex.h"

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lumisort::similarity {
namespace {

/// How near a subtree's items can be at best. Infinity stands for distances that were no numbers.
float lowerBound(float difference, float inherited) {
    return std::isfinite(difference) ? std::max({difference, 0.0F, inherited}) : inherited;
}

} // namespace

MetricIndex::MetricIndex(const std::vector<int>& items, const ItemDistance& distance,
                         const std::stop_token& stop) {
    nodes_.reserve(items.size());
    root_ = build(items, distance, stop);
}

std::optional<std::size_t> MetricIndex::build(std::vector<int> items, const ItemDistance& distance,
                                              const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    if (items.empty()) return std::nullopt;

    const int vantage = items.back();
    items.pop_back();
    std::vector<std::pair<float, int>> ranked;
    ranked.reserve(items.size());
    for (const int item : items) {
        tasks::checkCancelled(stop);
        const float apart = distance(vantage, item);
        // What is no number goes to the end: sorting needs an order.
        ranked.emplace_back(std::isnan(apart) ? std::numeric_limits<float>::infinity() : apart, item);
    }
    std::ranges::sort(ranked);
    const std::size_t middle = ranked.size() / 2;
    const float split = ranked.empty() ? 0.0F : ranked[middle].first;

    std::vector<int> outerItems;
    outerItems.reserve(ranked.size() - middle);
    items.clear();
    for (std::size_t rank = 0; rank < ranked.size(); ++rank)
        (rank < middle ? items : outerItems).push_back(ranked[rank].second);
    ranked = {};

    const auto inner = build(std::move(items), distance, stop);
    const auto outer = build(std::move(outerItems), distance, stop);
    nodes_.push_back({.item = vantage, .split = split, .inner = inner, .outer = outer});
    return nodes_.size() - 1;
}

std::optional<Neighbour> MetricIndex::nearest(int query, float radius, const ItemDistance& distance,
                                              const std::stop_token& stop) const {
    if (!root_) return std::nullopt;

    struct Visit {
        std::size_t node;
        float lowerBound;
    };
    std::optional<Neighbour> best;
    float bound = radius;
    std::vector<Visit> stack{{.node = *root_, .lowerBound = 0}};
    while (!stack.empty()) {
        const Visit visit = stack.back();
        stack.pop_back();
        tasks::checkCancelled(stop);
        if (visit.lowerBound > bound + slack) continue;

        const Node& node = nodes_[visit.node];
        const Neighbour found{.item = node.item, .distance = distance(query, node.item)};
        if (found.distance <= radius && (!best || found.beats(*best))) {
            best = found;
            bound = found.distance;
        }

        const float inner = lowerBound(found.distance - node.split, visit.lowerBound);
        const float outer = lowerBound(node.split - found.distance, visit.lowerBound);
        const auto push = [&](const std::optional<std::size_t>& child, float lower) {
            if (child && lower <= bound + slack) stack.push_back({.node = *child, .lowerBound = lower});
        };
        // The nearer side goes on last, and so is visited first.
        if (inner <= outer) {
            push(node.outer, outer);
            push(node.inner, inner);
        } else {
            push(node.inner, inner);
            push(node.outer, outer);
        }
    }
    return best;
}

} // namespace lumisort::similarity
