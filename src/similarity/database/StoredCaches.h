#pragma once

#include "platform/tasks/SerialExecutor.h"
#include "similarity/database/FingerprintDatabase.h"
#include "similarity/match/FindMatches.h"

namespace lumisort::similarity {

/// The caches of searches, kept between runs in a FingerprintDatabase. Fingerprints are stored under the name
/// of their algorithm, feature prints under the identity of the network, so that values of another algorithm
/// are never found. Any thread.
class StoredCaches {
public:
    explicit StoredCaches(std::string file = FingerprintDatabase::defaultFile());

    /// similarity::findMatches with the values that earlier runs stored; stores what this one computes.
    /// `known` gets what was read, also where the search is stopped later.
    MatchResult findMatches(const std::vector<library::Photo>& photos, SimilarityMethod method,
                            SimilarityLevel level, MatchCaches& known, const MatchProgress& progress,
                            const std::stop_token& stop);

    /// Adds to `known` the stored values of those `photos` that have none there yet, for the method. Blocks
    /// while it reads. Throws tasks::Cancelled, and FeaturePrintError where the network's weights cannot be
    /// read.
    void load(MatchCaches& known, const std::vector<library::Photo>& photos, SimilarityMethod method,
              const std::stop_token& stop);
    /// Stores the values of `found` that `known` does not hold for the same stamp. They are written on
    /// another thread, for which only the destructor waits.
    void store(const MatchCaches& found, const MatchCaches& known);

    /// As FingerprintDatabase::problem.
    std::string problem() { return database_.problem(); }
    /// Waits until everything is written.
    void flush();

private:
    void write(std::string algorithm, std::vector<StoredValue> values);

    FingerprintDatabase database_;
    tasks::SerialExecutor writer_; ///< last: its jobs use the database
};

} // namespace lumisort::similarity
