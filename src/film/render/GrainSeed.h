#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"

#include <cstdint>

namespace lumisort::film {

/// The seed of a photo's grain: the first four bytes, big-endian, of the SHA-256 of its path without symbolic
/// links. A photo has the same grain in every preview and export. Throws FileError.
std::uint32_t grainSeed(files::FileSystem& system, const files::FileUrl& photo);

} // namespace lumisort::film
