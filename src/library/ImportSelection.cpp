#include "library/ImportSelection.h"

#include <algorithm>
#include <iterator>

namespace lumisort::library {

bool ImportSelection::isEligible(const Photo& photo, const ReviewMarks& marks) {
    const auto mark = marks.find(photo.url.path());
    return mark == marks.end() || mark->second.decision != ReviewDecision::cleanup;
}

std::vector<Photo> ImportSelection::eligible(std::span<const Photo> photos, const ReviewMarks& marks) {
    std::vector<Photo> result;
    std::ranges::copy_if(photos, std::back_inserter(result),
                         [&](const Photo& photo) { return isEligible(photo, marks); });
    return result;
}

} // namespace lumisort::library
