#include "model/SimilarityEngines.h"

#include "similarity/featureprint/FeaturePrintModel.h"

namespace lumisort::model {

using namespace similarity;

SimilarityEngines SimilarityEngines::real() {
    return {.exact =
                [](const Photos& photos, const std::stop_token& stop) {
                    return similarity::findExactCopies(files::FileSystem::real(), photos, {}, stop);
                },
            .near =
                [](const Photos& photos, SimilarityLevel level, const FingerprintCache& cache,
                   int concurrency, const ScanProgress& progress, const std::stop_token& stop) {
                    return scanNearDuplicates(NearDuplicateDependencies::real(), photos, level, cache,
                                              concurrency, progress, stop);
                },
            .visual =
                [](const Photos& photos, SimilarityLevel level, const FeaturePrintCache& cache,
                   int concurrency, const VisualScan::Progress& progress, const std::stop_token& stop) {
                    static const auto model = std::make_shared<const FeaturePrintModel>();
                    const VisualScan engine(VisualScanDependencies::of(model), files::FileSystem::real(),
                                            time::Clock::system());
                    return engine.scan(photos, level, cache, concurrency, progress, stop);
                }};
}

} // namespace lumisort::model
