#pragma once

#include "library/Photo.h"

#include <unordered_map>
#include <vector>

namespace lumisort::similarity {

/// Photos that match one photo, the anchor. Its identity in lists is the anchor's URL.
struct SimilarityGroup {
    library::Photo anchor;
    std::vector<library::Photo> photos; ///< the anchor first
    /// Distance of each photo from the anchor, in the units of the feature prints. Only groups found by
    /// visual similarity have them.
    std::unordered_map<files::FileUrl, float> distances;

    friend bool operator==(const SimilarityGroup&, const SimilarityGroup&) = default;
};

} // namespace lumisort::similarity
