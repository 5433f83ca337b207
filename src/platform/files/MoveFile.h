#pragma once

#include <string>

namespace lumisort::files {

/// FileSystem::moveWithoutOverwrite on the machine's file system: the first of the ways below that the file
/// system knows.
void moveFileWithoutOverwrite(const std::string& from, const std::string& to);

// The ways, the safest first. Each fails with EEXIST when anything is at `to`, and returns false, with
// nothing done, where the file system lacks what it needs.

/// One step inside the kernel.
bool moveByExclusiveRename(const std::string& from, const std::string& to);
/// A second name for the file, then the first one goes. In between the file has both.
bool moveByLink(const std::string& from, const std::string& to);
/// An empty file takes the name, then the file replaces it. Always possible; whoever writes into the empty
/// file in between loses what they wrote.
void moveByPlaceholder(const std::string& from, const std::string& to);

} // namespace lumisort::files
