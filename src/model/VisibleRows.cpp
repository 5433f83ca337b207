#include "model/VisibleRows.h"

#include "library/FolderMatcher.h"

#include "platform/text/EnumNames.h"

#include <algorithm>

namespace lumisort::model {

Section sectionNamed(std::string_view name) {
    constexpr text::EnumNames<Section, 6> names{
        {"library", "folder", "offline", "keep", "cleanup", "similar"}};
    return names.find(name).value_or(Section::library);
}

std::vector<PhotoRow> visibleRows(const LibraryState& state, const SearchNames& names,
                                  const VisibleQuery& query) {
    std::optional<library::FolderMatcher> folder;
    if (query.section == Section::folder && query.folder) folder.emplace(*query.folder);
    const std::string text = SearchNames::folded(query.text);

    std::vector<PhotoRow> rows;
    const auto count = static_cast<PhotoRow>(state.photos().size());
    for (PhotoRow row = 0; row < count; ++row) {
        if (query.section == Section::offline ? !state.isUnavailable(row) : !state.isReadable(row)) continue;
        if (!text.empty() && !names.matches(row, text)) continue;
        if (folder && !folder->contains(state.photos()[row].url)) continue;
        if (query.section == Section::keep && state.decision(row) != library::ReviewDecision::keep) continue;
        if (query.section == Section::cleanup && state.decision(row) != library::ReviewDecision::cleanup)
            continue;
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::size_t> visibleGroups(std::span<const similarity::SimilarityGroup> groups,
                                       std::string_view text) {
    const auto wanted = SearchNames::folded(text);
    std::vector<std::size_t> visible;
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (wanted.empty() || std::ranges::any_of(groups[i].photos, [&](const library::Photo& photo) {
                return SearchNames::folded(photo.url.name()).find(wanted) != std::string::npos;
            }))
            visible.push_back(i);
    return visible;
}

} // namespace lumisort::model
