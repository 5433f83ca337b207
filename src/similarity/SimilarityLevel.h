#pragma once

#include "platform/text/EnumNames.h"

namespace lumisort::similarity {

/// How alike two photos must be to be grouped, as the user chooses it.
enum class SimilarityLevel { strict, balanced, loose };

inline constexpr std::array allSimilarityLevels{SimilarityLevel::strict, SimilarityLevel::balanced,
                                                SimilarityLevel::loose};

/// What two fingerprints may differ by at one level. All limits are inclusive.
struct MatchLimits {
    double aspectDifference; ///< |ln(aspect ÷ aspect)|
    int hammingDistance;     ///< bits of the perceptual hash; also the search radius in the index
    double colorDistance;    ///< mean absolute difference of the colour layouts, channels on 0…1
};

constexpr MatchLimits limits(SimilarityLevel level) {
    switch (level) {
    case SimilarityLevel::strict:
        return {.aspectDifference = 0.02, .hammingDistance = 4, .colorDistance = 0.07};
    case SimilarityLevel::balanced:
        return {.aspectDifference = 0.04, .hammingDistance = 8, .colorDistance = 0.12};
    case SimilarityLevel::loose:
        break;
    }
    return {.aspectDifference = 0.08, .hammingDistance = 12, .colorDistance = 0.18};
}

/// The levels' names in documents and in the interface.
inline constexpr text::EnumNames<SimilarityLevel, 3> similarityLevelNames{{"Strict", "Balanced", "Loose"}};

constexpr std::string_view storedName(SimilarityLevel level) {
    return similarityLevelNames.of(level);
}

} // namespace lumisort::similarity
