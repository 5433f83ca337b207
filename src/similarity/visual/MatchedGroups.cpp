#include "similarity/visual/MatchedGroups.h"

#include "platform/tasks/Cancellation.h"

#include <optional>

namespace lumisort::similarity {

std::vector<SimilarityGroup> matchedGroups(const std::vector<library::Photo>& photos,
                                           const std::vector<AnchorMatch>& matches,
                                           const std::stop_token& stop) {
    std::vector<SimilarityGroup> groups;
    std::vector<std::optional<std::size_t>> groupOf(photos.size()); // by the anchor's number
    for (std::size_t item = 0; item < photos.size(); ++item) {
        tasks::checkCancelled(stop);
        const auto& photo = photos[item];
        if (const auto group = groupOf[static_cast<std::size_t>(matches[item].anchor)]) {
            groups[*group].photos.push_back(photo);
            groups[*group].distances[photo.url] = matches[item].distance;
        } else {
            groupOf[item] = groups.size();
            groups.push_back({.anchor = photo, .photos = {photo}, .distances = {}});
        }
    }
    std::erase_if(groups, [](const SimilarityGroup& group) { return group.photos.size() < 2; });
    return groups;
}

} // namespace lumisort::similarity
