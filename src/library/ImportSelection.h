#pragma once

#include "library/Photo.h"
#include "library/ReviewMark.h"

#include <span>
#include <vector>

namespace lumisort::library::ImportSelection {

/// Whether a photo is to be organized: unless its mark says cleanup. A mark that has gone stale counts too,
/// because a photo that the user wanted gone must not come back through a change of its file.
bool isEligible(const Photo& photo, const ReviewMarks& marks);

/// The photos to organize, in their order.
std::vector<Photo> eligible(std::span<const Photo> photos, const ReviewMarks& marks);

} // namespace lumisort::library::ImportSelection
