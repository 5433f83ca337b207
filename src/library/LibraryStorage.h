#pragma once

#include "library/LibraryContents.h"
#include "platform/files/FileSystem.h"

#include <string>

namespace lumisort::library {

// The library document is one JSON object with "photos", "folders" and "reviewMarks". Marks are keyed by
// plain path. JSON cannot hold a path that is not UTF-8: such a path is keyed by its percent-encoded file
// URL, which no absolute path looks like.

/// Replaces the document as a whole, after creating the folders above it: after a crash at any instant the
/// old document or the new one is there. Holds a small piece of the text at a time. Returns the SHA-256 of
/// the text, as files::sha256 does. Throws FileError.
std::string writeLibrary(files::FileSystem& system, const LibraryContents& contents,
                         const files::FileUrl& url);

/// Throws FileError: isMissing() when there is no document yet; for a malformed one the message says where
/// and why. Nothing is changed on the medium.
LibraryContents readLibrary(files::FileSystem& system, const files::FileUrl& url);

} // namespace lumisort::library
