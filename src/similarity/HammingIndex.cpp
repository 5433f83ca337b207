#include "similarity/HammingIndex.h"

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace lumisort::similarity {

namespace {

constexpr std::uint64_t distanceBit(int distance) {
    return std::uint64_t{1} << (distance - 1);
}

/// The bits of the distances from … to, cut to 1…64.
constexpr std::uint64_t distanceBand(int from, int to) {
    from = std::max(from, 1);
    to = std::min(to, 64);
    if (from > to) return 0;
    return (~std::uint64_t{0} >> (64 - (to - from + 1))) << (from - 1);
}

} // namespace

std::size_t HammingIndex::Children::rank(int distance) const {
    return std::popcount(present_ & (distanceBit(distance) - 1));
}

std::optional<std::size_t> HammingIndex::Children::at(int distance) const {
    if (!(present_ & distanceBit(distance))) return std::nullopt;
    return positions_[rank(distance)];
}

std::span<const std::uint32_t> HammingIndex::Children::within(int from, int to) const {
    const std::uint64_t wanted = present_ & distanceBand(from, to);
    if (wanted == 0) return {};
    return std::span(positions_).subspan(rank(std::countr_zero(wanted) + 1), std::popcount(wanted));
}

void HammingIndex::Children::add(int distance, std::size_t position) {
    positions_.insert(positions_.begin() + rank(distance), static_cast<std::uint32_t>(position));
    present_ |= distanceBit(distance);
}

void HammingIndex::insert(std::uint64_t hash, int value) {
    if (tables_) {
        tables_->insert(hash, value);
        return;
    }
    insertIntoTree(hash, value);
    if (nodes_.size() <= treeKeyLimit) return;
    tables_.emplace();
    for (const auto& node : std::exchange(nodes_, {}))
        for (const int stored : node.values) tables_->insert(node.hash, stored);
}

void HammingIndex::insertIntoTree(std::uint64_t hash, int value) {
    const std::size_t added = nodes_.size();
    for (std::size_t position = 0; position < added;) {
        Node& node = nodes_[position];
        const int distance = std::popcount(node.hash ^ hash);
        if (distance == 0) {
            node.values.push_back(value);
            return;
        }
        if (const auto child = node.children.at(distance)) {
            position = *child;
        } else {
            node.children.add(distance, added);
            break;
        }
    }
    nodes_.push_back({.hash = hash, .values = {value}, .children = {}});
}

std::vector<HammingIndex::Candidate> HammingIndex::candidatesInTree(std::uint64_t hash, int radius,
                                                                    const std::stop_token& stop) const {
    std::vector<Candidate> found;
    std::vector<std::uint32_t> waiting;
    if (!nodes_.empty()) waiting.push_back(0);
    while (!waiting.empty()) {
        tasks::checkCancelled(stop);
        const Node& node = nodes_[waiting.back()];
        waiting.pop_back();
        const int distance = std::popcount(node.hash ^ hash);
        if (distance <= radius)
            for (const int value : node.values) found.push_back({value, distance});
        const auto children = node.children.within(distance - radius, distance + radius);
        waiting.insert(waiting.end(), children.begin(), children.end());
    }
    return found;
}

std::vector<HammingIndex::Candidate> HammingIndex::candidates(std::uint64_t hash, int radius,
                                                              const std::stop_token& stop) const {
    std::vector<Candidate> found;
    if (tables_) {
        for (const auto& hit : tables_->find(hash, radius, stop)) found.push_back({hit.value, hit.distance});
    } else {
        found = candidatesInTree(hash, radius, stop);
    }
    std::ranges::sort(found, {}, [](const Candidate& hit) { return std::pair(hit.distance, hit.value); });
    return found;
}

} // namespace lumisort::similarity
