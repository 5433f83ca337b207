#pragma once

#include "library/FileStamp.h"
#include "library/Photo.h"
#include "platform/files/FileSystem.h"

#include <optional>
#include <span>
#include <stop_token>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lumisort::library {

enum class FolderState {
    online,
    offline,     ///< not there, as on a drive that is unplugged
    unavailable, ///< there, but no folder or not readable
};

/// "Online", "Offline", "Unavailable".
std::string_view title(FolderState state);

/// What can be reached of a library at one moment.
struct LibrarySurvey {
    std::unordered_map<files::FileUrl, FolderState> folders;
    /// The current stamp of each photo, in the order of the photos; none where it cannot be read.
    std::vector<std::optional<FileStamp>> stamps;
};

/// Looks at every folder and photo: one status query and one access check each, no contents. A photo is
/// readable while it is a regular file that may be read, inside a folder that is online. Blocks. Reports what
/// cannot be reached instead of failing; throws tasks::Cancelled only. Any thread.
LibrarySurvey survey(files::FileSystem& system, std::span<const files::FileUrl> folders,
                     std::span<const Photo> photos, const std::stop_token& stop = {});

/// The photos that are inside at least one of the folders, in their order.
std::vector<Photo> photosInside(std::span<const Photo> photos, std::span<const files::FileUrl> folders);

} // namespace lumisort::library
