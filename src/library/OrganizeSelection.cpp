#include "library/OrganizeSelection.h"

#include <algorithm>
#include <iterator>

namespace lumisort::library {

bool isToOrganize(const Photo& photo, const ReviewMarks& marks) {
    const auto mark = marks.find(photo.url.path());
    return mark == marks.end() || mark->second.decision != ReviewDecision::cleanup;
}

std::vector<Photo> photosToOrganize(std::span<const Photo> photos, const ReviewMarks& marks) {
    std::vector<Photo> result;
    std::ranges::copy_if(photos, std::back_inserter(result),
                         [&](const Photo& photo) { return isToOrganize(photo, marks); });
    return result;
}

} // namespace lumisort::library
