#pragma once

#include "platform/files/FileSystem.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::test {

/// One file, link or folder. `contents` and `entries` are what the running system sees, the other two what is
/// on the medium.
struct MemoryNode {
    using Pointer = std::shared_ptr<MemoryNode>;

    files::FileStatus status;
    std::string contents, contentsOnMedium; ///< of a link: its target
    std::map<std::string, Pointer> entries, entriesOnMedium;
    bool isLocked = false; ///< of a folder; ends with the process

    bool isFolder() const { return status.kind == files::FileKind::directory; }
};

/// Where a path leads: the folder that holds its last name, that name, and what is there, if anything.
struct MemoryPlace {
    MemoryNode::Pointer folder;
    std::string name;
    MemoryNode::Pointer node;
};

/// Walks down from `root`, through symbolic links. Throws FileError (ENOENT, ENOTDIR, ELOOP, ENAMETOOLONG)
/// that says `action`, where the folders above the last name are not there.
MemoryPlace findInMemory(const MemoryNode::Pointer& root, std::string_view action, const std::string& path,
                         files::Links links);

/// Makes what is on the medium what the system sees. Folder entries that are not on the medium are lost, or
/// kept when `keepEntries`.
void forgetUnflushed(MemoryNode& root, bool keepEntries);

/// Appends the paths of all files and links below `folder`, each behind `prefix`.
void collectFiles(const MemoryNode& folder, const std::string& prefix, std::vector<std::string>& paths);

} // namespace lumisort::test
