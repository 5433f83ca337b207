#pragma once

#include "platform/files/FileUrl.h"

#include <string>
#include <string_view>

namespace lumisort::library {

/// Tells whether photos are inside a folder: the folder's path components are then a proper prefix of the
/// photo's (whole components, case-sensitive). ".", ".." and doubled slashes are removed as text first;
/// symbolic links are not resolved. Constructed once per folder and asked once per photo.
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
