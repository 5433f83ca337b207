#pragma once

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>
#include <vector>

namespace lumisort::similarity {

/// The distance between two items, which are numbers: a metric up to rounding errors that stay below a third
/// of MetricIndex::slack. May throw, which fails the operation that calls it, and is called from as many
/// threads as that operation uses. A distance that is not a number matches nothing.
template <class Distance>
concept ItemDistance = std::is_invocable_r_v<float, const Distance&, int, int>;

/// An item that was found, and how far it is from the one that was looked for.
struct Neighbour {
    int item = 0;
    float distance = 0;

    /// Whether this is the better find: nearer, or as near with the smaller number.
    bool beats(const Neighbour& other) const {
        return distance < other.distance || (distance == other.distance && item < other.item);
    }
    friend bool operator==(const Neighbour&, const Neighbour&) = default;
};

/// A vantage-point tree over items: every node parts the items below it at their median distance from the
/// node's own item, so that the triangle inequality rules out whole subtrees (P. N. Yianilos, 1993). Children
/// come before their parent in `nodes`. Built once, then only read, from any thread.
class MetricIndex {
public:
    struct Node {
        int item = 0;                     ///< the vantage item
        float split = 0;                  ///< median distance from it to the items below
        std::optional<std::size_t> inner; ///< items nearer than the median
        std::optional<std::size_t> outer; ///< items at the median or farther
    };

    /// Subtrees are ruled out only when they are farther than the best find by more than this, so that items
    /// as near as the best one are met whatever the shape of the tree and the rounding of the distances.
    static constexpr float slack = 0.00001F;

    /// Builds the tree over `items`, the last of which becomes the root. Throws tasks::Cancelled.
    template <ItemDistance Distance>
    MetricIndex(const std::vector<int>& items, const Distance& distance, const std::stop_token& stop) {
        nodes_.reserve(items.size());
        root_ = build(items, distance, stop);
    }

    /// The item nearest to `query` among those at most `radius` away, of equally near ones that with the
    /// smallest number. Throws tasks::Cancelled.
    template <ItemDistance Distance>
    std::optional<Neighbour> nearest(int query, float radius, const Distance& distance,
                                     const std::stop_token& stop) const;

    const std::vector<Node>& nodes() const { return nodes_; }

private:
    template <ItemDistance Distance>
    std::optional<std::size_t> build(std::vector<int> items, const Distance& distance,
                                     const std::stop_token& stop);
    static float lowerBound(float difference, float inherited);

    std::vector<Node> nodes_;
    std::optional<std::size_t> root_;
};

/// How near a subtree's items can be at best. Infinity stands for distances that were no numbers.
inline float MetricIndex::lowerBound(float difference, float inherited) {
    return std::isfinite(difference) ? std::max({difference, 0.0F, inherited}) : inherited;
}

template <ItemDistance Distance>
std::optional<std::size_t> MetricIndex::build(std::vector<int> items, const Distance& distance,
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

template <ItemDistance Distance>
std::optional<Neighbour> MetricIndex::nearest(int query, float radius, const Distance& distance,
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
