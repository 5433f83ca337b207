#pragma once

#include "model/SearchNames.h"
#include "similarity/SimilarityGroup.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::model {

/// What the grid shows.
enum class Section { library, folder, offline, keep, cleanup, similar };

/// The section of the name "library", "folder", "offline", "keep", "cleanup" or "similar"; any other name acts
/// like "library".
Section sectionNamed(std::string_view name);

struct VisibleQuery {
    Section section = Section::library;
    std::optional<files::FileUrl> folder; ///< for Section::folder
    std::string text;                     ///< what a file's name must hold, letter case aside; empty for all
};

/// Rows of the photos that pass, in library order. `names` must be up to date with the state's photos.
std::vector<PhotoRow> visibleRows(const LibraryState& state, const SearchNames& names,
                                  const VisibleQuery& query);

/// Indices of the groups that hold a photo whose name contains `text`, letter case aside; of all for "".
std::vector<std::size_t> visibleGroups(std::span<const similarity::SimilarityGroup> groups,
                                       std::string_view text);

} // namespace lumisort::model
