#pragma once

#include "platform/text/EnumNames.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lumisort::film {

/// How a group of numbers was obtained, the most trustworthy first.
enum class MaterialEvidence { publishedValue, graphEstimate, modelAssumption };

inline constexpr std::array allMaterialEvidence{
    MaterialEvidence::publishedValue, MaterialEvidence::graphEstimate, MaterialEvidence::modelAssumption};

inline constexpr text::EnumNames<MaterialEvidence, 3> materialEvidenceNames{
    {"publishedValue", "graphEstimate", "modelAssumption"}};

constexpr std::string_view storedName(MaterialEvidence evidence) {
    return materialEvidenceNames.of(evidence);
}

/// Where one component of a profile comes from and how far it can be trusted.
struct MaterialProvenance {
    std::string component; ///< the group of numbers, "Grain parameters"
    MaterialEvidence evidence = MaterialEvidence::modelAssumption;
    std::optional<std::string> source; ///< the document and its address; none for an assumption
    std::optional<int> sourcePage;     ///< its page, counted from 1; none without a document
    std::string conditions;            ///< of the measurement or the model
    std::string uncertainty;           ///< stated uncertainty and caveats

    friend bool operator==(const MaterialProvenance&, const MaterialProvenance&) = default;
};

} // namespace lumisort::film
