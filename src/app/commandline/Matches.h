#pragma once

#include "app/commandline/Command.h"
#include "library/Photo.h"
#include "similarity/match/FindMatches.h"

#include <ostream>
#include <vector>

namespace lumisort::app {

/// What a search with `method` found.
struct Matches {
    similarity::SimilarityMethod method;
    similarity::MatchResult result;

    /// Whether some photo could not be compared for its file's sake.
    bool failed() const;
};

/// What a search may use of earlier runs, and leave for later ones.
enum class StoredValues { used, ignored };

/// Searches `photos`, showing progress. Throws as similarity::findMatches.
Matches findMatches(const std::vector<library::Photo>& photos, similarity::SimilarityMethod method,
                    similarity::SimilarityLevel level, StoredValues storedValues, Dependencies& deps);

/// One block a group, the anchor first, then a summary.
void printText(const Matches& matches, std::ostream& out);
void printJson(const Matches& matches, std::ostream& out);

} // namespace lumisort::app
