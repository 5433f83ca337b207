#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"

#include <optional>
#include <string>
#include <vector>

namespace lumisort::organize {

/// The folders of runs inside `destination`: by their names, links left out. None where it cannot be read.
std::vector<files::FileUrl> runFolders(files::FileSystem& system, const files::FileUrl& destination);

/// Whether another program is copying into a run's folder: it is locked, on a file system that can lock.
bool isUnderWay(files::FileSystem& system, const files::FileUrl& run);

/// Throws files::FileError where no regular file is at `path`; a symbolic link is none.
void requireRegularFile(files::FileSystem& system, const std::string& path);

/// The place of a file inside a run's folder that was at `then` when the place was noted and is at `now`.
/// None for one that was outside, or whose path goes through "." or "..".
std::optional<files::FileUrl> placeNow(const files::FileUrl& place, const files::FileUrl& then,
                                       const files::FileUrl& now);

/// Whether every folder between a run's folder and a place in it is a folder, or is not there yet; a symbolic
/// link is none, for what is written through it would lie elsewhere.
bool isReachedThroughFolders(files::FileSystem& system, const files::FileUrl& place,
                             const files::FileUrl& run);

} // namespace lumisort::organize
