#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"
#include "platform/time/Timestamp.h"

#include <optional>

namespace lumisort::library {

/// The documents that a save kept beside the library document because it would have overwritten them.
struct KeptDocuments {
    std::optional<files::FileUrl> unreadable; ///< the document that could not be read, under its new name
    std::optional<files::FileUrl> changed;    ///< the copy of a document that another program wrote

    friend bool operator==(const KeptDocuments&, const KeptDocuments&) = default;
};

/// Renames a document that could not be read to "library.json.unreadable-20261122T184500Z" in the same
/// folder, never over an earlier one. Returns its new URL, none when there is no document. Throws FileError;
/// the document then has its old name.
std::optional<files::FileUrl> setAsideUnreadable(files::FileSystem& system, const files::FileUrl& url,
                                                 time::Timestamp now);

/// Copies a document that another program wrote to "library.json.changed-20261122T184500Z" in the same
/// folder, never over an earlier one; the document itself stays, so that there is one at every instant.
/// Returns the URL of the copy, none when there is no document. Throws FileError; no part of a copy is left
/// then.
std::optional<files::FileUrl> keepChanged(files::FileSystem& system, const files::FileUrl& url,
                                          time::Timestamp now);

} // namespace lumisort::library
