#pragma once

#include "library/FileStamp.h"
#include "library/Photo.h"
#include "platform/files/FileSystem.h"
#include "platform/time/Clock.h"
#include "similarity/SimilarityGroup.h"
#include "similarity/SimilarityLevel.h"
#include "similarity/visual/VisualScanDependencies.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lumisort::similarity {

/// A photo's print, good for as long as the file has the same stamp and the same model makes the prints.
struct CachedFeaturePrint {
    library::FileStamp stamp; ///< of the file when the print was made
    std::shared_ptr<const FeaturePrint> observation;
    std::shared_ptr<const FeaturePrintIdentity> identity;
};

/// By URL. A copy shares the prints.
using FeaturePrintCache = std::unordered_map<files::FileUrl, CachedFeaturePrint>;

struct VisualScanResult {
    std::vector<SimilarityGroup> groups; ///< of two photos and more, in the order of their anchors' paths
    FeaturePrintCache cache;             ///< exactly the photos of this run that have a print
    std::vector<std::string> failures;   ///< "name: reason" of each photo without a print, in path order
};

/// How far apart the prints of photos may be that belong together at a level. The radii hold for the network
/// that data/feature-print/NOTICE names; they were measured on 1.49 million pairs of different photos, of
/// which 8e-6, 9e-5 and 1e-3 lie nearer.
float featureRadius(SimilarityLevel level);

/// Finds photos that look alike: the same scene shot twice, a burst, a slightly different framing. Stateless
/// between runs; any thread.
class VisualScan {
public:
    /// `fraction` is 0…1; `text` is to be shown as it is.
    using Progress = std::function<void(double fraction, std::string_view text)>;

    VisualScan(VisualScanDependencies deps, files::FileSystem& system, time::Clock clock)
        : deps_(std::move(deps)), system_(system), clock_(std::move(clock)) {}

    /// Groups photos around anchors, in the order of their paths, on tasks::threadCount(width) threads.
    /// The result does not depend on the width. Takes prints from `cache` where file and model are
    /// unchanged. `progress` is called on the calling thread, at most ten times a second while photos are
    /// counted. Holds 1.6 kB for each photo, beside its names.
    ///
    /// Throws tasks::Cancelled soon after a stop; FeaturePrintError `unsupported`, before any work, where the
    /// model makes prints of another revision; VisualScanError `nothingAnalyzed` where there are photos and
    /// none has a print; VisualScanError `corruptFile` where two prints have no distance.
    VisualScanResult scan(std::vector<library::Photo> photos, SimilarityLevel level,
                          const FeaturePrintCache& cache, int width, const Progress& progress,
                          const std::stop_token& stop) const;

    /// The print of one file. Throws VisualScanError `corruptFile` or `tooLittleDetail`, FeaturePrintError
    /// and tasks::Cancelled.
    FeaturePrint feature(const files::FileUrl& url, const std::stop_token& stop) const;

private:
    struct ExtractedFeature;
    ExtractedFeature extract(const library::Photo& photo, const FeaturePrintCache& cache,
                             const std::stop_token& stop) const;
    CachedFeaturePrint printed(const files::FileUrl& url, const FeaturePrintCache& cache,
                               const std::stop_token& stop) const;

    VisualScanDependencies deps_;
    files::FileSystem& system_;
    time::Clock clock_;
};

} // namespace lumisort::similarity
