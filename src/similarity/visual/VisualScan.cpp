#include "similarity/visual/VisualScan.h"

#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "platform/tasks/OrderedWorkers.h"
#include "platform/tasks/ProgressThrottle.h"
#include "similarity/PathOrder.h"
#include "similarity/ProgressText.h"
#include "similarity/visual/MatchedGroups.h"
#include "similarity/visual/PhotoDetail.h"
#include "similarity/visual/PrintMatching.h"
#include "similarity/visual/VisualScanError.h"

#include <array>
#include <optional>
#include <utility>

namespace lumisort::similarity {
float featureRadius(SimilarityLevel level) {
    constexpr std::array radii{0.64F, 0.75F, 0.855F};
    return radii[static_cast<std::size_t>(level)];
}

/// What became of one photo: a print, or the line that says why not.
struct VisualScan::ExtractedFeature {
    std::optional<CachedFeaturePrint> cached;
    std::string failure;
};

VisualScanResult VisualScan::scan(std::vector<library::Photo> photos, SimilarityLevel level,
                                  const FeaturePrintCache& cache, int width, const Progress& progress,
                                  const std::stop_token& stop) const {
    tasks::checkCancelled(stop);
    if (deps_.identity->revision != FeaturePrintModel::revision)
        throw FeaturePrintError(FeaturePrintFailure::unsupported,
                                "This version of the image features is not supported.");

    photos = sortedByPath(std::move(photos));
    tasks::ProgressThrottle throttle(clock_);
    auto extracted = tasks::orderedWorkers(
        photos.size(), width,
        [&](std::size_t index, const std::stop_token& inner) { return extract(photos[index], cache, inner); },
        [&](std::size_t completed) {
            if (throttle.due(completed, photos.size()))
                progress(0.75 * static_cast<double>(completed) / static_cast<double>(photos.size()),
                         progressText("Analyzing", completed, photos.size()));
        },
        stop);

    VisualScanResult result;
    std::vector<library::Photo> items;
    std::vector<std::shared_ptr<const FeaturePrint>> prints;
    for (std::size_t index = 0; index < photos.size(); ++index) {
        tasks::checkCancelled(stop);
        auto& [cached, failure] = extracted[index];
        if (cached) {
            items.push_back(photos[index]);
            prints.push_back(cached->observation);
            result.cache.insert_or_assign(photos[index].url, std::move(*cached));
        } else {
            result.failures.push_back(std::move(failure));
        }
    }
    if (items.empty() && !photos.empty())
        throw VisualScanError(VisualScanFailure::nothingAnalyzed,
                              "Visual analysis could not analyze any photos. " + result.failures.front());

    progress(0.75, "Indexing visual features…");
    tasks::checkCancelled(stop);
    progress(0.8, "Grouping matches…");
    const auto matches = matchPrints(
        prints, featureRadius(level), width,
        [&](int done) {
            const auto grouped = static_cast<std::size_t>(done);
            if (throttle.due(grouped, items.size()))
                progress(0.8 + 0.2 * static_cast<double>(done) / static_cast<double>(items.size()),
                         progressText("Grouping", grouped, items.size()));
        },
        stop);
    result.groups = matchedGroups(items, matches, stop);
    return result;
}

FeaturePrint VisualScan::feature(const files::FileUrl& url, const std::stop_token& stop) const {
    images::Bitmap photo;
    try {
        photo = deps_.picture(url, stop);
    } catch (const images::ImageError& error) {
        throw VisualScanError(VisualScanFailure::corruptFile, error.what());
    }
    if (photoDetail(photo) < leastDetail)
        throw VisualScanError(VisualScanFailure::tooLittleDetail,
                              "Too little image detail; use Exact Copies.");
    const FeaturePrint print = deps_.print(photo);
    tasks::checkCancelled(stop);
    return print;
}

VisualScan::ExtractedFeature VisualScan::extract(const library::Photo& photo, const FeaturePrintCache& cache,
                                                 const std::stop_token& stop) const {
    const auto failed = [&](const std::string& reason) {
        return ExtractedFeature{.cached = {}, .failure = std::string(photo.url.name()) + ": " + reason};
    };
    try {
        return {.cached = printed(photo.url, cache, stop), .failure = {}};
    } catch (const files::FileError& error) {
        return failed(error.description());
    } catch (const VisualScanError& error) {
        return failed(error.what());
    } catch (const FeaturePrintError& error) {
        return failed(error.what());
    }
}

CachedFeaturePrint VisualScan::printed(const files::FileUrl& url, const FeaturePrintCache& cache,
                                       const std::stop_token& stop) const {
    tasks::checkCancelled(stop);
    CachedFeaturePrint result{
        .stamp = library::FileStamp::read(system_, url), .observation = {}, .identity = deps_.identity};
    const auto cached = cache.find(url);
    if (cached != cache.end() && cached->second.stamp == result.stamp &&
        *cached->second.identity == *deps_.identity)
        result.observation = cached->second.observation;
    else
        result.observation = std::make_shared<const FeaturePrint>(feature(url, stop));

    tasks::checkCancelled(stop);
    if (library::FileStamp::read(system_, url) != result.stamp)
        throw VisualScanError(VisualScanFailure::fileChanged, "The file changed while it was analyzed.");
    return result;
}

} // namespace lumisort::similarity
