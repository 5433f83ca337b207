#pragma once

#include "library/Photo.h"
#include "library/ReviewMark.h"

#include <span>
#include <vector>

namespace lumisort::library {

/// Whether a photo is to be organized: all are whose mark is not cleanup. A stale mark counts as well,
/// because a photo that the user wanted gone must not come back through a change of its file.
bool isToOrganize(const Photo& photo, const ReviewMarks& marks);

/// The photos to organize, in their order.
std::vector<Photo> photosToOrganize(std::span<const Photo> photos, const ReviewMarks& marks);

} // namespace lumisort::library
