#include "similarity/NearDuplicateScan.h"

#include "platform/files/FileError.h"
#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "platform/tasks/OrderedWorkers.h"
#include "platform/tasks/ProgressThrottle.h"
#include "similarity/Fingerprinting.h"
#include "similarity/Grouping.h"
#include "similarity/PathOrder.h"

#include <utility>

namespace lumisort::similarity {

namespace {

std::optional<CachedFingerprint> extractUnlessChanged(const NearDuplicateDependencies& deps,
                                                      const files::FileUrl& url,
                                                      const FingerprintCache& cache,
                                                      const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    const auto before = library::FileStamp::read(deps.system, url);
    const auto known = cache.find(url);
    const bool unchanged = known != cache.end() && known->second.stamp == before;
    tasks::checkCancelled(stop);
    CachedFingerprint cached{before, unchanged ? known->second.fingerprint : deps.fingerprint(url, stop)};
    tasks::checkCancelled(stop);
    if (library::FileStamp::read(deps.system, url) != before) return std::nullopt;
    return cached;
}

ExtractedFingerprint extract(const NearDuplicateDependencies& deps, const files::FileUrl& url,
                             std::size_t index, const FingerprintCache& cache, const std::stop_token& stop) {
    try {
        return {index, extractUnlessChanged(deps, url, cache, stop)};
    } catch (const images::ImageError&) {
        return {index, std::nullopt};
    } catch (const files::FileError&) {
        return {index, std::nullopt};
    }
}

} // namespace

NearDuplicateDependencies NearDuplicateDependencies::real() {
    return {.system = files::FileSystem::real(),
            .clock = time::Clock::system(),
            .fingerprint = [](const files::FileUrl& url, const std::stop_token& stop) {
                return similarity::fingerprint(url, stop);
            }};
}

SimilarityResult scanNearDuplicates(const NearDuplicateDependencies& deps, std::vector<library::Photo> photos,
                                    SimilarityLevel level, const FingerprintCache& cache, int width,
                                    const ScanProgress& progress, const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    photos = sortedByPath(std::move(photos));
    tasks::ProgressThrottle throttle(deps.clock);
    auto extracted = tasks::orderedWorkers(
        photos.size(), width,
        [&](std::size_t index, const std::stop_token& workerStop) {
            return extract(deps, photos[index].url, index, cache, workerStop);
        },
        [&](std::size_t completed) {
            if (progress && throttle.due(completed, photos.size())) progress(completed, photos.size());
        },
        stop);
    tasks::checkCancelled(stop);

    SimilarityResult result;
    std::vector<GroupingItem> items;
    for (auto& [index, cached] : extracted) {
        if (!cached) {
            ++result.unreadable;
            continue;
        }
        const auto& photo = photos[index];
        const auto& kept = result.cache.insert_or_assign(photo.url, std::move(*cached)).first->second;
        if (kept.fingerprint.isLowDetail())
            ++result.lowDetail;
        else
            items.push_back({photo, kept.fingerprint});
    }
    result.groups = groupNearDuplicates(items, level, stop);
    return result;
}

} // namespace lumisort::similarity
