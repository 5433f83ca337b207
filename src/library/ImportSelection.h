#pragma once

#include "library/Photo.h"
#include "library/ReviewMark.h"

#include <span>
#include <vector>

namespace lumisort::library::ImportSelection {

/// The photos to organize, in their order: all but those whose mark says cleanup. A mark that has gone stale
/// counts too, because a photo that the user wanted gone must not come back through a change of its file.
std::vector<Photo> eligible(std::span<const Photo> photos, const ReviewMarks& marks);

} // namespace lumisort::library::ImportSelection
