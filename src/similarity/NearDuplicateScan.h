#pragma once

#include "library/FileStamp.h"
#include "library/Photo.h"
#include "platform/files/FileSystem.h"
#include "platform/time/Clock.h"
#include "similarity/SimilarityGroup.h"
#include "similarity/SimilarityLevel.h"
#include "similarity/VisualFingerprint.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <stop_token>
#include <unordered_map>
#include <vector>

namespace lumisort::similarity {

/// A fingerprint and the state of the file that it was taken of.
struct CachedFingerprint {
    library::FileStamp stamp;
    VisualFingerprint fingerprint;

    friend bool operator==(const CachedFingerprint&, const CachedFingerprint&) = default;
};

using FingerprintCache = std::unordered_map<files::FileUrl, CachedFingerprint>;

/// What one worker made of one photo.
struct ExtractedFingerprint {
    std::size_t index = 0;                   ///< among the photos in path order
    std::optional<CachedFingerprint> cached; ///< none where the photo could not be fingerprinted
};

struct SimilarityResult {
    std::vector<SimilarityGroup> groups;
    FingerprintCache
        cache; ///< the photos of this run that have a fingerprint, plain ones included, and no others
    std::size_t unreadable = 0;
    std::size_t lowDetail = 0; ///< photos too plain to be compared
};

/// The files, the clock and the decoder of a scan; tests replace them.
struct NearDuplicateDependencies {
    files::FileSystem& system;
    time::Clock clock;
    std::function<VisualFingerprint(const files::FileUrl&, const std::stop_token&)> fingerprint;

    /// The machine's files and clock, and fingerprint.
    static NearDuplicateDependencies real();
};

/// Called on the thread that runs the scan.
using ScanProgress = std::function<void(std::size_t completed, std::size_t total)>;

/// Fingerprints `photos` on tasks::threadCount(width) threads, reusing what `cache` holds of files that
/// have not changed since, and groups them in path order. A photo that cannot be read, or changes while it
/// is, counts as unreadable and stops nothing. Reports the first photo finished, the last, and in between at
/// most ten a second. Throws tasks::Cancelled and images::DecoderUnavailable, once all workers have ended.
SimilarityResult scanNearDuplicates(const NearDuplicateDependencies& deps, std::vector<library::Photo> photos,
                                    SimilarityLevel level, const FingerprintCache& cache, int width,
                                    const ScanProgress& progress, const std::stop_token& stop = {});

} // namespace lumisort::similarity
