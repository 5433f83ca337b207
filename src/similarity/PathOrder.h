#pragma once

#include "library/Photo.h"

#include <string>
#include <vector>

namespace lumisort::similarity {

/// A text whose byte order is the order of paths: by code points after NFC normalization, and by plain bytes
/// where that finds two paths equal, so that the order depends on the paths alone.
std::string pathKey(const files::FileUrl& url);

/// The photos by ascending path; those at the same path keep their order.
std::vector<library::Photo> sortedByPath(std::vector<library::Photo> photos);

} // namespace lumisort::similarity
