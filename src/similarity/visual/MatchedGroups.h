#pragma once

#include "library/Photo.h"
#include "similarity/SimilarityGroup.h"
#include "similarity/visual/AnchorGrouping.h"

#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// The groups of two photos and more that the matches (one for each photo) make, in the order of their
/// anchors. A photo at another's anchor carries its distance. Throws tasks::Cancelled.
std::vector<SimilarityGroup> matchedGroups(const std::vector<library::Photo>& photos,
                                           const std::vector<AnchorMatch>& matches,
                                           const std::stop_token& stop);

} // namespace lumisort::similarity
