#pragma once

#include "model/LibraryState.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::model {

/// What the grid shows.
enum class Section { library, folder, offline, keep, cleanup, similar };

/// The section of that name ("library", "folder", …); any other name acts like "library".
Section sectionNamed(std::string_view name);

struct VisibleQuery {
    Section section = Section::library;
    std::optional<files::FileUrl> folder; ///< for Section::folder
    std::string text;                     ///< what a file's name must hold, letter case aside; empty for all
};

/// File names as searching compares them, folded once so that a keystroke costs no more than looking.
class SearchNames {
public:
    /// Folds the names of the photos that are not among those it already has, by position.
    void update(const LibraryState::Photos& photos);
    bool matches(PhotoRow row, std::string_view foldedText) const {
        return names_[row].find(foldedText) != std::string::npos;
    }
    static std::string folded(std::string_view text);

private:
    LibraryState::Photos photos_;
    std::vector<std::string> names_;
};

/// Rows of the photos that pass, in library order. `names` must be up to date with the state's photos.
std::vector<PhotoRow> visibleRows(const LibraryState& state, const SearchNames& names,
                                  const VisibleQuery& query);

} // namespace lumisort::model
