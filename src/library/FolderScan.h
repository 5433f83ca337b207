#pragma once

#include "library/Photo.h"
#include "platform/files/FileSystem.h"
#include "platform/images/RawExtensions.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace lumisort::library {

/// Extensions of the files that count as photos, in lower case, sorted: the common formats and every RAW
/// format.
inline constexpr auto supportedExtensions = [] {
    constexpr std::array<std::string_view, 6> common{"heic", "jpeg", "jpg", "png", "tif", "tiff"};
    std::array<std::string_view, common.size() + images::rawExtensions.size()> all;
    std::ranges::merge(common, images::rawExtensions, all.begin());
    return all;
}();

/// The photos in a folder and in all folders below it.
struct FolderScan {
    std::vector<Photo> photos; ///< in natural order of their paths
    std::int64_t skipped = 0;  ///< files that look like photos by name and could not be read as such
};

/// Called with the number of photos found so far.
using ScanProgress = std::function<void(std::size_t)>;

/// Searches `folder` and all folders below it for photos; reads headers only and changes nothing. Hidden
/// entries and symbolic links are passed over, and so is what lies inside packages (folders that a file
/// browser shows as one document, such as another program's photo library), inside recycle bins and the like,
/// and inside folders that cannot be read; `folder` itself may be any of these. A folder that cannot be read
/// gives an empty result. Throws images::DecoderUnavailable alone.
///
/// A record's URL is the path of `folder` and the way from there, unresolved. A photo whose path is too long
/// for the system (PATH_MAX) counts as skipped.
///
/// Runs on the calling thread and calls `progress` there at every hundredth photo. Checks `stop` before each
/// entry; the result is then what was found so far. The decoding libraries read the headers: they open the
/// file at a photo's path themselves, past `system`.
FolderScan scanFolder(files::FileSystem& system, const files::FileUrl& folder, const ScanProgress& progress,
                      const std::stop_token& stop = {});

} // namespace lumisort::library
