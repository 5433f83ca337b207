#include "model/VisibleRows.h"

#include "library/FolderMatcher.h"
#include "platform/text/Collation.h"

#include <array>
#include <utility>

namespace lumisort::model {

Section sectionNamed(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, Section>, 5> named{
        {{"folder", Section::folder},
         {"offline", Section::offline},
         {"keep", Section::keep},
         {"cleanup", Section::cleanup},
         {"similar", Section::similar}}};
    for (const auto& [title, section] : named)
        if (title == name) return section;
    return Section::library;
}

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

std::vector<PhotoRow> visibleRows(const LibraryState& state, const SearchNames& names,
                                  const VisibleQuery& query) {
    std::optional<library::FolderMatcher> folder;
    if (query.section == Section::folder && query.folder) folder.emplace(*query.folder);
    const std::string text = SearchNames::folded(query.text);
    const bool offline = query.section == Section::offline;

    std::vector<PhotoRow> rows;
    const auto count = static_cast<PhotoRow>(state.photos().size());
    for (PhotoRow row = 0; row < count; ++row) {
        if (state.isReadable(row) == offline) continue;
        if (!text.empty() && !names.matches(row, text)) continue;
        if (folder && !folder->contains(state.photos()[row].url)) continue;
        if (query.section == Section::keep && state.decision(row) != library::ReviewDecision::keep) continue;
        if (query.section == Section::cleanup && state.decision(row) != library::ReviewDecision::cleanup)
            continue;
        rows.push_back(row);
    }
    return rows;
}

} // namespace lumisort::model
