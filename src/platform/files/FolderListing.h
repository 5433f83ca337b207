#pragma once

#include "platform/files/FileSystem.h"

#include <functional>
#include <string>
#include <string_view>

namespace lumisort::files {

/// Takes an entry's name and kind (of a symbolic link: the link itself) and says whether to go on.
using EntryVisitor = std::function<bool(std::string_view name, FileKind kind)>;

/// Visits every entry of the folder at `path` but "." and "..", in the order in which the file system holds
/// them, while the folder is open; nothing else is asked of the system where the folder itself tells the
/// kinds. With Links::doNotFollow a symbolic link at `path` fails. Paths longer than the system takes at once
/// (PATH_MAX) are walked piece by piece. Throws FileError. Any thread.
void eachEntry(const std::string& path, Links links, const EntryVisitor& visit);

} // namespace lumisort::files
