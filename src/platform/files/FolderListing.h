#pragma once

#include "platform/files/FileSystem.h"

#include <string>

namespace lumisort::files {

/// FileSystem::eachEntry on the machine's file system. The folder stays open meanwhile; no other system call
/// is made where the folder's own entries say their kinds.
void listFolder(const std::string& path, Links links, const EntryVisitor& visit);

} // namespace lumisort::files
