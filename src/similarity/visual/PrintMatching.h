#pragma once

#include "similarity/featureprint/FeaturePrint.h"
#include "similarity/visual/AnchorGrouping.h"

#include <cstdint>
#include <memory>
#include <span>

namespace lumisort::similarity {

/// The distance between two prints. Throws VisualScanError `corruptFile` where it is no finite number.
float checkedDistance(const FeaturePrint& a, const FeaturePrint& b);

/// What AnchorGrouping::matches returns for checkedDistance(*prints[i], *prints[j]), with a fraction of the
/// work. In hundreds of dimensions the triangle inequality rules out next to nothing; sketches of the prints
/// rule out nearly everything, and what they leave is decided by the distance itself. Few prints, and prints
/// whose length is not 1, go the general way. `distances`, where given, becomes the number of distances
/// computed. 100,000 prints take about 40 MB beside their own. Throws as AnchorGrouping::matches.
std::vector<AnchorMatch> matchPrints(std::span<const std::shared_ptr<const FeaturePrint>> prints,
                                     float radius, int width, const GroupingProgress& progress,
                                     const std::stop_token& stop, std::int64_t* distances = nullptr);

} // namespace lumisort::similarity
