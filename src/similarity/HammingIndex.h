#pragma once

#include "similarity/HammingTables.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// Integers under 64-bit keys, found by the number of bits in which a key differs from a hash. For one thread
/// at a time.
///
/// The keys form a tree after Burkhard and Keller (Some approaches to best-match file searching, 1973): all
/// keys below child d of a node differ from the node's key in exactly d bits, so that by the triangle
/// inequality a search skips whole subtrees. That spares little once the radius approaches the spread of
/// random keys, 32 ± 4 bits apart. An index that outgrows `treeKeyLimit` therefore hands its keys over to
/// HammingTables, which give the same candidates.
class HammingIndex {
public:
    /// Distinct keys that the tree takes. About where tables become faster than it at radius 12.
    static constexpr std::size_t treeKeyLimit = 1024;

    /// The children of a node by distance, 1…64, held densely.
    class Children {
    public:
        /// The position of the child at `distance`; none when there is none.
        std::optional<std::size_t> at(int distance) const;
        /// The positions of the children at the distances from … to, nearest first.
        std::span<const std::uint32_t> within(int from, int to) const;
        void add(int distance, std::size_t position);

    private:
        std::size_t rank(int distance) const;

        std::uint64_t present_ = 0;            ///< bit d − 1 is set where there is a child at distance d
        std::vector<std::uint32_t> positions_; ///< of those, by ascending distance
    };

    struct Node {
        std::uint64_t hash = 0;
        std::vector<int> values; ///< stored under exactly this key, in the order of their insertion
        Children children;       ///< positions in the list of nodes
    };

    struct Candidate {
        int value = 0;
        int distance = 0;

        friend bool operator==(const Candidate&, const Candidate&) = default;
    };

    /// Adds `value` under `hash`. The same pair may be added again; it is then found as often.
    void insert(std::uint64_t hash, int value);

    /// Every value whose key differs from `hash` in at most `radius` bits, by distance, then value. Looks at
    /// `stop` before every node or bucket and throws tasks::Cancelled.
    std::vector<Candidate> candidates(std::uint64_t hash, int radius, const std::stop_token& stop = {}) const;

    /// The tree, its root first, nodes in the order in which they came; empty once the keys are in the
    /// tables.
    const std::vector<Node>& nodes() const { return nodes_; }

private:
    void insertIntoTree(std::uint64_t hash, int value);
    std::vector<Candidate> candidatesInTree(std::uint64_t hash, int radius,
                                            const std::stop_token& stop) const;

    std::vector<Node> nodes_;
    std::optional<HammingTables> tables_; ///< all keys, once the tree was outgrown
};

} // namespace lumisort::similarity
