#pragma once

#include "library/Photo.h"
#include "similarity/SimilarityGroup.h"
#include "similarity/SimilarityLevel.h"
#include "similarity/VisualFingerprint.h"

#include <span>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// A photo to be grouped. Both outlive the call.
struct GroupingItem {
    const library::Photo& photo;
    const VisualFingerprint& fingerprint;
};

/// Groups photos around anchors in one pass over `items`, whose order decides: a photo joins the group whose
/// anchor it matches most closely (of equals the one founded first), or else founds a group of its own.
/// Photos are compared with anchors only, never with other members. Groups come in the order of their
/// founding, those of one photo are left out, and distances stay empty. Looks at `stop` at every photo and
/// every comparison; throws tasks::Cancelled.
std::vector<SimilarityGroup> groupNearDuplicates(std::span<const GroupingItem> items, SimilarityLevel level,
                                                 const std::stop_token& stop = {});

} // namespace lumisort::similarity
