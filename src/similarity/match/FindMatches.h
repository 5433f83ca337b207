#pragma once

#include "library/Photo.h"
#include "similarity/NearDuplicateScan.h"
#include "similarity/SimilarityGroup.h"
#include "similarity/SimilarityLevel.h"
#include "similarity/SimilarityMethod.h"
#include "similarity/visual/VisualScan.h"

#include <cstddef>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::similarity {

/// What a search found out about single photos and the next one need not find out again. An entry counts only
/// while its file has the stamp that it carries.
struct MatchCaches {
    FingerprintCache fingerprints; ///< of the method nearDuplicates
    FeaturePrintCache prints;      ///< of the method visual
};

/// Fields of other methods are empty.
struct MatchResult {
    std::vector<SimilarityGroup> groups;
    std::size_t unreadable = 0;        ///< exact, nearDuplicates: photos that could not be read
    std::size_t lowDetail = 0;         ///< nearDuplicates: photos too plain to be compared
    std::vector<std::string> failures; ///< visual: "name: reason" of each photo without a print
    MatchCaches caches;                ///< the photos of this search and no others
    /// Why the database of what earlier runs computed is not used, or what was moved aside: one line that
    /// names the file; "" without.
    std::string storageProblem;
};

/// `fraction` is 0…1; `text` is to be shown as it is. Called on the thread that searches, at most about ten
/// times a second.
using MatchProgress = std::function<void(double fraction, std::string_view text)>;

/// Groups `photos` that are copies of each other or look alike. `level` counts for the methods that have
/// levels. Results do not depend on the number of threads. Blocks; any thread.
///
/// Throws tasks::Cancelled soon after a stop, images::DecoderUnavailable, and for the method visual
/// FeaturePrintError where its weights cannot be read and VisualScanError where no photo at all has a print.
MatchResult findMatches(const std::vector<library::Photo>& photos, SimilarityMethod method,
                        SimilarityLevel level, const MatchCaches& known, const MatchProgress& progress,
                        const std::stop_token& stop);

} // namespace lumisort::similarity
