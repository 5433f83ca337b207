#pragma once

#include "similarity/ExactCopies.h"
#include "similarity/NearDuplicateScan.h"
#include "similarity/visual/VisualScan.h"

#include <functional>

namespace lumisort::model {

/// The three ways of finding matching photos, as the model calls them: on a worker, with copies of
/// everything.
struct SimilarityEngines {
    using Photos = std::vector<library::Photo>;

    std::function<similarity::ExactCopies(const Photos&, const std::stop_token&)> exact;
    std::function<similarity::SimilarityResult(const Photos&, similarity::SimilarityLevel,
                                               const similarity::FingerprintCache&, int concurrency,
                                               const similarity::ScanProgress&, const std::stop_token&)>
        near;
    std::function<similarity::VisualScanResult(
        const Photos&, similarity::SimilarityLevel, const similarity::FeaturePrintCache&, int concurrency,
        const similarity::VisualScan::Progress&, const std::stop_token&)>
        visual;

    /// The engines of this program. The network of the visual one is loaded when first asked for.
    static SimilarityEngines real();
};

} // namespace lumisort::model
