#pragma once

#include "platform/files/FileSystem.h"

#include <string>

namespace lumisort::files {

/// Creates the folder at `path` and all that are missing above it, and returns when they are on the medium: a
/// file flushed into a folder that is not would be lost with it. Throws FileError.
void createDurableFolders(FileSystem& system, const std::string& path);

} // namespace lumisort::files
