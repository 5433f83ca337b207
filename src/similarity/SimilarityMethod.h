#pragma once

#include "platform/text/EnumNames.h"

namespace lumisort::similarity {

/// How matching photos are looked for.
enum class SimilarityMethod { exact, nearDuplicates, visual };

inline constexpr std::array allSimilarityMethods{SimilarityMethod::exact, SimilarityMethod::nearDuplicates,
                                                 SimilarityMethod::visual};

/// The methods' names in the interface.
inline constexpr text::EnumNames<SimilarityMethod, 3> similarityMethodNames{
    {"Exact Copies", "Near Duplicates", "Visual Similarity"}};

constexpr std::string_view storedName(SimilarityMethod method) {
    return similarityMethodNames.of(method);
}

} // namespace lumisort::similarity
