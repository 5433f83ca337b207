#pragma once

#include "model/LibraryState.h"

#include <string>
#include <string_view>
#include <vector>

namespace lumisort::model {

/// File names as a search compares them, folded once so that a keystroke costs no more than comparing.
class SearchNames {
public:
    /// Folds the names of those photos that differ from the photos known so far, by position.
    void update(const LibraryState::Photos& photos);
    /// Whether the name of the photo at `row` contains a text that was folded.
    bool matches(PhotoRow row, std::string_view foldedText) const {
        return names_[row].find(foldedText) != std::string::npos;
    }
    /// NFC in lower case.
    static std::string folded(std::string_view text);

private:
    LibraryState::Photos photos_;
    std::vector<std::string> names_;
};

} // namespace lumisort::model
