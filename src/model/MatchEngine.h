#pragma once

#include "similarity/match/FindMatches.h"

#include <functional>

namespace lumisort::model {

/// Finds matches, as similarity::findMatches: on a worker. What it reads of earlier runs is added to `known`,
/// which nobody else uses meanwhile.
using MatchEngine = std::function<similarity::MatchResult(
    const std::vector<library::Photo>& photos, similarity::SimilarityMethod method,
    similarity::SimilarityLevel level, similarity::MatchCaches& known,
    const similarity::MatchProgress& progress, const std::stop_token& stop)>;

/// The engine with the user's database of what earlier runs computed, opened at the first search.
MatchEngine engineWithStoredCaches();

} // namespace lumisort::model
