#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// How far two items, known by number only, are apart: a metric up to rounding errors that stay below a third
/// of MetricIndex::slack. May throw, which fails the operation that asked, and is called from as many threads
/// as that operation uses. A distance that is not a number matches nothing.
using ItemDistance = std::function<float(int, int)>;

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
    MetricIndex(const std::vector<int>& items, const ItemDistance& distance, const std::stop_token& stop);

    /// The item nearest to `query` among those at most `radius` away, of equally near ones that with the
    /// smallest number. Throws tasks::Cancelled.
    std::optional<Neighbour> nearest(int query, float radius, const ItemDistance& distance,
                                     const std::stop_token& stop) const;

    const std::vector<Node>& nodes() const { return nodes_; }

private:
    std::optional<std::size_t> build(std::vector<int> items, const ItemDistance& distance,
                                     const std::stop_token& stop);

    std::vector<Node> nodes_;
    std::optional<std::size_t> root_;
};

} // namespace lumisort::similarity
