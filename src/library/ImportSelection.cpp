#include "library/ImportSelection.h"

#include <algorithm>
#include <iterator>

namespace lumisort::library {

std::vector<Photo> ImportSelection::eligible(std::span<const Photo> photos, const ReviewMarks& marks) {
    std::vector<Photo> result;
    std::ranges::copy_if(photos, std::back_inserter(result), [&](const Photo& photo) {
        const auto mark = marks.find(photo.url.path());
        return mark == marks.end() || mark->second.decision != ReviewDecision::cleanup;
    });
    return result;
}

} // namespace lumisort::library
