#pragma once

#include "library/LibrarySession.h"
#include "platform/files/FileSystem.h"

#include <optional>
#include <string>

/// The document is one JSON object with "photos", "folders" and "reviewMarks". Marks are keyed by plain path;
/// JSON cannot hold a path that is no UTF-8, so that one is keyed by its percent-encoded file URL, which no
/// absolute path looks like.
namespace lumisort::library::SessionStore {

/// Where the library document lies: the path in the environment variable LUMISORT_TEST_SESSION, else
/// "Lumisort/library.json" in the user's data folder (XDG_DATA_HOME, or ~/.local/share).
files::FileUrl location();

/// Replaces the document whole, after creating the folders above it: after a crash at any instant the old
/// document or the new one is there. Holds a small piece of the text at a time. Throws FileError.
void save(files::FileSystem& system, const LibrarySession& session, const files::FileUrl& url);

/// Throws FileError: isMissing() when there is no document yet; for a malformed one the message says where
/// and why. Nothing is changed on the medium.
LibrarySession load(files::FileSystem& system, const files::FileUrl& url);

/// Moves a document that could not be read out of the way of the first save: to
/// "library.json.unreadable-20261122T184500Z" beside it, never over an earlier one. Gives back where it lies
/// now, none when there is no document. Throws FileError; the document is where it was then.
std::optional<files::FileUrl> setAsideUnreadable(files::FileSystem& system, const files::FileUrl& url,
                                                 time::Timestamp now);

/// Copies a document that another program wrote to "library.json.changed-20261122T184500Z" beside it, never
/// over an earlier one; it stays where it is, so that there is a document at every instant. Gives back where
/// the copy lies, none when there is no document. Throws FileError; no part of a copy is left then.
std::optional<files::FileUrl> keepChanged(files::FileSystem& system, const files::FileUrl& url,
                                          time::Timestamp now);

} // namespace lumisort::library::SessionStore
