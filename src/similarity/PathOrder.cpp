#include "similarity/PathOrder.h"

#include "platform/text/Collation.h"

#include <algorithm>
#include <utility>

namespace lumisort::similarity {

std::string pathKey(const files::FileUrl& url) {
    // The bytes of UTF-8 sort as its code points do, and no path holds the NUL between the two forms.
    return text::canonicalForm(url.path()) + '\0' + url.path();
}

std::vector<library::Photo> sortedByPath(std::vector<library::Photo> photos) {
    std::vector<std::pair<std::string, library::Photo>> keyed;
    keyed.reserve(photos.size());
    for (auto& photo : photos) {
        auto key = pathKey(photo.url);
        keyed.emplace_back(std::move(key), std::move(photo));
    }
    std::ranges::stable_sort(keyed, {}, [](const auto& entry) -> const std::string& { return entry.first; });
    std::ranges::transform(keyed, photos.begin(), [](auto& entry) { return std::move(entry.second); });
    return photos;
}

} // namespace lumisort::similarity
