#pragma once

#include "platform/files/FileUrl.h"

#include <string>
#include <string_view>

namespace lumisort::library {

/// A folder as a container of photos: a photo lies inside when the folder's path components are a proper
/// prefix of the photo's, whole components, letter case counting. "." and ".." and doubled slashes are taken
/// out as text first; symbolic links are not resolved. Made once per folder, asked once per photo.
class FolderMatcher {
public:
    explicit FolderMatcher(const files::FileUrl& folder);

    bool contains(const files::FileUrl& item) const;

private:
    std::string prefix_; ///< the standardised path, ending in a slash
};

/// `path` (absolute) without ".", ".." and doubled slashes, and without a slash at its end.
std::string standardizedPath(std::string_view path);

} // namespace lumisort::library
