#pragma once

#include "library/FileStamp.h"
#include "platform/text/EnumNames.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace lumisort::library {

/// What the user decided about a photo. No decision is no mark.
enum class ReviewDecision { keep, cleanup };

/// The decisions' texts in documents and to the user.
inline constexpr text::EnumNames<ReviewDecision, 2> reviewDecisionNames{{"Keep", "For Cleanup"}};

constexpr std::string_view storedName(ReviewDecision decision) {
    return reviewDecisionNames.of(decision);
}

/// A note about one photo, bound to the file's state when it was made: it stops applying while the file's
/// stamp is another one, and is kept nevertheless.
struct ReviewMark {
    ReviewDecision decision = ReviewDecision::keep;
    FileStamp stamp;

    friend bool operator==(const ReviewMark&, const ReviewMark&) = default;
};

/// Marks by the photo's plain path, so that a photo that leaves the library and comes back finds its mark.
using ReviewMarks = std::unordered_map<std::string, ReviewMark>;

} // namespace lumisort::library
