#pragma once

#include "platform/files/FileSystem.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace lumisort::files {

/// Replaces the file at `path` by `contents`, or creates it: a temporary file beside it is written, flushed
/// to the medium and renamed over it, and the folder is flushed. After a crash at any instant the old file or
/// the new one is there, whole. Where `path` is a symbolic link, its target is replaced and the link stays.
/// Permissions of a file that is replaced are kept. The temporary file is removed on failure; a killed
/// program leaves it behind, under a hidden name, until removeLeftovers. Throws FileError that names `path`;
/// the old file is then still there, or, where only the last flush failed, the new one.
void replaceFile(FileSystem& system, const std::string& path, std::string_view contents);

/// The same for contents too large to be held at once: `write` writes them from the start to the end. What it
/// throws leaves the old file in place and comes out.
void replaceFile(FileSystem& system, const std::string& path, const std::function<void(OpenFile&)>& write);

/// An unused hidden name beside `path`, for what is written before it gets its own name. removeLeftovers
/// knows it by the name of the file at `path`.
std::string temporaryPath(const std::string& path);

/// Removes the temporary files that killed programs left behind while they wrote the file at `path`. To be
/// called by the one program that may write that file (it holds the file's lock): the temporary file of
/// another one that is writing would be removed, too. Reports no failure: what cannot be removed stays.
void removeLeftovers(FileSystem& system, const std::string& path);

/// The whole file. Throws FileError; one larger than `limitBytes` fails with EFBIG before it is read.
std::string readFile(FileSystem& system, const std::string& path, std::int64_t limitBytes);

} // namespace lumisort::files
