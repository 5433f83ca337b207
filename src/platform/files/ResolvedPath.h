#pragma once

#include "platform/files/FileSystem.h"

#include <string>

namespace lumisort::files {

/// The path of the same file without symbolic links, ".", ".." and doubled slashes: one name for a file that
/// is reached in several ways. ".." is taken as the system does, after the links before it. Throws FileError
/// when a component is missing or cannot be looked at, ELOOP after 40 links.
std::string resolvedPath(FileSystem& system, const std::string& path);

} // namespace lumisort::files
