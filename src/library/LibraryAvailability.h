#pragma once

#include "library/FingerprintStamp.h"
#include "library/Photo.h"
#include "platform/files/FileSystem.h"

#include <optional>
#include <span>
#include <stop_token>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace lumisort::library {

enum class FolderState {
    online,
    offline,     ///< not there, as on a drive that is unplugged
    unavailable, ///< there, but no folder or not readable
};

/// "Online", "Offline", "Unavailable".
std::string_view title(FolderState state);

/// A look at folders and photos, in the order of the lists that were given.
struct LibrarySurvey {
    std::unordered_map<files::FileUrl, FolderState> folders;
    /// By position of the photo: its current stamp, none where it cannot be read.
    std::vector<std::optional<FingerprintStamp>> stamps;
};

/// Looks at every folder and photo: one status query and one access check each, no contents. A photo is
/// readable while it is a regular file that may be read and lies inside a folder that is online. Blocks; has
/// no errors, for what cannot be reached is what it reports. Throws tasks::Cancelled only. Any thread.
LibrarySurvey survey(files::FileSystem& system, std::span<const files::FileUrl> folders,
                     std::span<const Photo> photos, const std::stop_token& stop = {});

/// Which folders and photos of the library can be reached, at one moment.
struct LibraryAvailability {
    std::unordered_map<files::FileUrl, FolderState> folders;
    /// Photos that exist, are regular files, are readable and lie inside a folder that is online.
    std::unordered_set<files::FileUrl> readable;
    /// The current stamp of every readable photo, and of no other.
    std::unordered_map<files::FileUrl, FingerprintStamp> stamps;

    friend bool operator==(const LibraryAvailability&, const LibraryAvailability&) = default;

    /// The survey by URL.
    static LibraryAvailability inspect(files::FileSystem& system, std::span<const files::FileUrl> folders,
                                       std::span<const Photo> photos, const std::stop_token& stop = {});

    /// The photos that lie inside at least one of the folders, in their order.
    static std::vector<Photo> retaining(std::span<const Photo> photos,
                                        std::span<const files::FileUrl> folders);
};

} // namespace lumisort::library
