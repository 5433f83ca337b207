#pragma once

#include "similarity/VisualFingerprint.h"
#include "similarity/featureprint/FeaturePrint.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumisort::similarity {

/// The bytes of a fingerprint: little-endian; colours as the 16-bit sums that their means come from, so that
/// reading gives the same doubles. Changes with the form of a fingerprint, whose algorithm has another name
/// then.
std::string bytesOf(const VisualFingerprint& fingerprint);
/// None for bytes of any other form.
std::optional<VisualFingerprint> fingerprintFrom(std::string_view bytes);

/// The bytes of a print: 32-bit floats, little-endian.
std::string bytesOf(const FeaturePrint& print);
/// None for bytes of another length, or of a vector that is not finite or not of norm 1.
std::optional<FeaturePrint> featurePrintFrom(std::string_view bytes);

} // namespace lumisort::similarity
