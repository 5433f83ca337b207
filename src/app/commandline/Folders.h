#pragma once

#include "app/commandline/Command.h"
#include "library/Photo.h"
#include "platform/files/FileUrl.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::app {

/// A path from the command line: made absolute, "." and ".." and doubled slashes taken out as text. Throws
/// std::invalid_argument on an empty one.
files::FileUrl fileArgument(const std::string& argument);

/// A folder from the command line that must be there and readable. Throws FileError: "Could not <action> …".
files::FileUrl folderArgument(const std::string& argument, std::string_view action);

/// Folders from the command line, each once, less those that lie inside another of them. Throws FileError for
/// one that is missing, is no folder or may not be read: a mistyped name must not pass as an empty folder.
std::vector<files::FileUrl> folderArguments(const std::vector<std::string>& arguments);

struct FoundPhotos {
    std::vector<library::Photo> photos; ///< folder by folder, in natural order within each
    std::int64_t skipped = 0;           ///< files with a photo's name that could not be read
};

/// Scans the folders, showing progress. Throws tasks::Cancelled when stopped.
FoundPhotos scanFolders(const std::vector<files::FileUrl>& folders, Dependencies& deps);

} // namespace lumisort::app
