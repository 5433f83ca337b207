#pragma once

#include "app/commandline/Command.h"
#include "library/Photo.h"
#include "similarity/SimilarityGroup.h"
#include "similarity/SimilarityLevel.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace lumisort::app {

/// What one of the three methods found. Of the counts only those of the method are there.
struct Matches {
    std::vector<similarity::SimilarityGroup> groups;
    std::optional<std::size_t> failedCount;           ///< exact: files that could not be compared
    std::optional<std::size_t> unreadable;            ///< near: photos that could not be decoded
    std::optional<std::size_t> lowDetail;             ///< near: photos too plain to compare
    std::optional<std::vector<std::string>> failures; ///< visual: a line a photo

    /// Whether some photo could not be compared for its file's sake.
    bool failed() const;
};

/// Each runs one method over `photos`, showing progress. Throws tasks::Cancelled.
Matches exactMatches(const std::vector<library::Photo>& photos, similarity::SimilarityLevel level,
                     Surroundings& with);
Matches nearMatches(const std::vector<library::Photo>& photos, similarity::SimilarityLevel level,
                    Surroundings& with);
Matches visualMatches(const std::vector<library::Photo>& photos, similarity::SimilarityLevel level,
                      Surroundings& with);

/// One block a group, the anchor first, then a summary.
void printText(const Matches& matches, std::ostream& out);
void printJson(const Matches& matches, std::ostream& out);

} // namespace lumisort::app
