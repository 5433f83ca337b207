#include "similarity/Grouping.h"

#include "platform/tasks/Cancellation.h"
#include "similarity/HammingIndex.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace lumisort::similarity {

namespace {

/// The anchors of the groups founded so far, by group number, found by their hashes in all orientations.
class Anchors {
public:
    explicit Anchors(SimilarityLevel level) : level_(level) {}

    /// The group whose anchor `candidate` matches most closely, of equals the one founded first.
    std::optional<int> nearest(const VisualFingerprint& candidate, const std::stop_token& stop) {
        std::optional<std::pair<int, int>> best; // distance, group
        ++search_;
        for (const auto& [group, hashDistance] : index_.candidates(candidate.hash, radius(), stop)) {
            tasks::checkCancelled(stop);
            // Hits come nearest first, and no match is nearer than the nearest of its anchor's hashes.
            if (best && hashDistance > best->first) break;
            Anchor& anchor = anchors_[group];
            if (std::exchange(anchor.lastSearch, search_) == search_) continue; // met in another orientation
            if (const auto distance = candidate.matchDistance(*anchor.fingerprint, level_))
                best = std::min(best.value_or(std::pair(*distance, group)), std::pair(*distance, group));
        }
        return best ? std::optional(best->second) : std::nullopt;
    }

    void add(const VisualFingerprint& fingerprint, const std::stop_token& stop) {
        std::vector<std::uint64_t> hashes = fingerprint.orientationHashes;
        if (hashes.empty()) hashes.push_back(fingerprint.hash);
        std::ranges::sort(hashes);
        const auto repeated = std::ranges::unique(hashes);
        hashes.erase(repeated.begin(), repeated.end());
        for (const auto hash : hashes) {
            tasks::checkCancelled(stop);
            index_.insert(hash, static_cast<int>(anchors_.size()));
        }
        anchors_.push_back({&fingerprint, 0});
    }

private:
    struct Anchor {
        const VisualFingerprint* fingerprint;
        std::size_t lastSearch; ///< the search that last looked at this anchor
    };

    int radius() const { return limits(level_).hammingDistance; }

    SimilarityLevel level_;
    HammingIndex index_;
    std::vector<Anchor> anchors_;
    std::size_t search_ = 0;
};

} // namespace

std::vector<SimilarityGroup> groupNearDuplicates(std::span<const GroupingItem> items, SimilarityLevel level,
                                                 const std::stop_token& stop) {
    Anchors anchors(level);
    std::vector<SimilarityGroup> groups;
    for (const auto& [photo, fingerprint] : items) {
        tasks::checkCancelled(stop);
        if (const auto found = anchors.nearest(fingerprint, stop)) {
            groups[*found].photos.push_back(photo);
        } else {
            anchors.add(fingerprint, stop);
            groups.push_back({.anchor = photo, .photos = {photo}, .distances = {}});
        }
    }
    std::erase_if(groups, [](const SimilarityGroup& candidate) { return candidate.photos.size() < 2; });
    return groups;
}

} // namespace lumisort::similarity
