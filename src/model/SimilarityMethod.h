#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace lumisort::model {

/// How matching photos are looked for.
enum class SimilarityMethod { exact, nearDuplicates, visual };

inline constexpr std::array allSimilarityMethods{SimilarityMethod::exact, SimilarityMethod::nearDuplicates,
                                                 SimilarityMethod::visual};

/// The method's name in the interface: "Exact Copies", "Near Duplicates", "Visual Similarity".
constexpr std::string_view rawValue(SimilarityMethod method) {
    constexpr std::array<std::string_view, 3> names{"Exact Copies", "Near Duplicates", "Visual Similarity"};
    return names[static_cast<std::size_t>(method)];
}

constexpr std::optional<SimilarityMethod> similarityMethod(std::string_view name) {
    for (const auto method : allSimilarityMethods)
        if (rawValue(method) == name) return method;
    return std::nullopt;
}

} // namespace lumisort::model
