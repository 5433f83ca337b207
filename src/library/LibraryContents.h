#pragma once

#include "library/Photo.h"
#include "library/ReviewMark.h"

#include <vector>

namespace lumisort::library {

/// Everything that the library document holds.
struct LibraryContents {
    std::vector<Photo> photos;           ///< in library order
    std::vector<files::FileUrl> folders; ///< in the order in which they were added
    ReviewMarks reviewMarks;

    friend bool operator==(const LibraryContents&, const LibraryContents&) = default;
};

} // namespace lumisort::library
