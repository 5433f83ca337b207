#include "similarity/match/FindMatches.h"

#include "platform/images/Decoder.h"
#include "similarity/ExactCopies.h"
#include "similarity/ProgressText.h"
#include "similarity/match/SharedModel.h"

#include <algorithm>
#include <utility>

namespace lumisort::similarity {
namespace {

using Photos = std::vector<library::Photo>;

MatchResult findExact(const Photos& photos, const std::stop_token& stop) {
    auto copies = findExactCopies(files::FileSystem::real(), photos, {}, stop);
    MatchResult result{.unreadable = copies.failed};
    for (auto& group : copies.groups)
        result.groups.push_back({.anchor = group.front(), .photos = std::move(group)});
    return result;
}

MatchResult findNearDuplicates(const Photos& photos, SimilarityLevel level, const FingerprintCache& known,
                               const MatchProgress& progress, const std::stop_token& stop) {
    const auto report = [&](std::size_t completed, std::size_t total) {
        progress(static_cast<double>(completed) / static_cast<double>(std::max<std::size_t>(total, 1)),
                 completed == total ? "Grouping matches…" : progressText("Analyzing", completed, total));
    };
    auto scanned = scanNearDuplicates(NearDuplicateDependencies::real(), photos, level, known,
                                      images::mostDecodesAtOnce, report, stop);
    return {.groups = std::move(scanned.groups),
            .unreadable = scanned.unreadable,
            .lowDetail = scanned.lowDetail,
            .caches = {.fingerprints = std::move(scanned.cache)}};
}

MatchResult findVisual(const Photos& photos, SimilarityLevel level, const FeaturePrintCache& known,
                       const MatchProgress& progress, const std::stop_token& stop) {
    const VisualScan scan(VisualScanDependencies::of(sharedFeaturePrintModel()), files::FileSystem::real(),
                          time::Clock::system());
    auto scanned = scan.scan(photos, level, known, images::mostDecodesAtOnce, progress, stop);
    return {.groups = std::move(scanned.groups),
            .failures = std::move(scanned.failures),
            .caches = {.prints = std::move(scanned.cache)}};
}

} // namespace

MatchResult findMatches(const Photos& photos, SimilarityMethod method, SimilarityLevel level,
                        const MatchCaches& known, const MatchProgress& progress,
                        const std::stop_token& stop) {
    switch (method) {
    case SimilarityMethod::exact:
        return findExact(photos, stop);
    case SimilarityMethod::nearDuplicates:
        return findNearDuplicates(photos, level, known.fingerprints, progress, stop);
    case SimilarityMethod::visual:
        break;
    }
    return findVisual(photos, level, known.prints, progress, stop);
}

} // namespace lumisort::similarity
