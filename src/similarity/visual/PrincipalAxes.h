#pragma once

#include "similarity/featureprint/FeaturePrint.h"

#include <array>
#include <memory>
#include <span>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

using PrintAxis = std::array<double, featurePrintLength>;

/// `count` directions along which the prints differ most from zero: close to the leading eigenvectors of
/// their second-moment matrix, found by subspace iteration on at most a thousand of the prints. Orthonormal
/// to 1e-12 whatever the prints are; where those span fewer than `count` dimensions, the axes left over are
/// zero. A pure function of its arguments; takes about a tenth of a second. Throws tasks::Cancelled.
std::vector<PrintAxis> principalAxes(std::span<const std::shared_ptr<const FeaturePrint>> prints,
                                     std::size_t count, const std::stop_token& stop);

} // namespace lumisort::similarity
