#pragma once

#include "library/Photo.h"
#include "library/ReviewMark.h"

#include <vector>

namespace lumisort::library {

/// All that the library document holds.
struct LibrarySession {
    std::vector<Photo> photos;           ///< in library order
    std::vector<files::FileUrl> folders; ///< in the order in which they were added
    ReviewMarks reviewMarks;

    friend bool operator==(const LibrarySession&, const LibrarySession&) = default;
};

} // namespace lumisort::library
