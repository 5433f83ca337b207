#include "model/SearchNames.h"

#include "platform/text/Collation.h"

#include <utility>

namespace lumisort::model {

std::string SearchNames::folded(std::string_view text) {
    return text::lowerCase(text::canonicalForm(text));
}

void SearchNames::update(const LibraryState::Photos& photos) {
    if (photos == photos_) return;
    std::vector<std::string> names;
    names.reserve(photos->size());
    for (std::size_t row = 0; row < photos->size(); ++row) {
        const bool known = photos_ && row < names_.size() && (*photos_)[row].url == (*photos)[row].url;
        names.push_back(known ? std::move(names_[row]) : folded((*photos)[row].url.name()));
    }
    names_ = std::move(names);
    photos_ = photos;
}

} // namespace lumisort::model
