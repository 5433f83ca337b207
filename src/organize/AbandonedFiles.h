#pragma once

#include "platform/files/FileSystem.h"

#include <string>

namespace lumisort::organize {

/// Removes the hidden files ("….partial") that killed runs left in their folders inside `destination`: copies
/// that were not verified yet, and the report's second file. Skips a folder whose run is still under way (it
/// holds the folder's lock) and file systems that cannot lock folders. Reports no failure: what cannot be
/// removed stays.
void removeAbandonedFiles(files::FileSystem& system, const std::string& destination);

/// Removes such files of one run, whose lock the caller holds. Throws files::FileError.
void removePartialFiles(files::FileSystem& system, const std::string& run);

} // namespace lumisort::organize
