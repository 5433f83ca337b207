#pragma once

#include "platform/files/FileUrl.h"
#include "platform/json/Reader.h"
#include "platform/json/Writer.h"

#include <optional>
#include <vector>

namespace lumisort::library {

/// The folders whose photos the program never proposes to skip, and asks about before it marks one for
/// cleanup. A plain value. Folders are told apart by their paths as text (standardizedPath); those below a
/// protected folder are protected with it.
class ProtectedFolders {
public:
    /// Ends in a slash each, in the order in which they were protected.
    const std::vector<files::FileUrl>& folders() const { return folders_; }
    void add(const files::FileUrl& folder);
    /// Removes the folder itself; one that is protected through a folder above it stays so.
    void remove(const files::FileUrl& folder);

    /// The protected folder that holds the photo, the first where several do; none where it is unprotected.
    std::optional<files::FileUrl> holding(const files::FileUrl& photo) const;
    bool isProtected(const files::FileUrl& photo) const { return holding(photo).has_value(); }
    /// The folder itself where it was protected, else a protected one above it, else none.
    std::optional<files::FileUrl> protecting(const files::FileUrl& folder) const;

    /// The document form: "folders", an array of URLs.
    void write(json::Writer& out) const;
    static ProtectedFolders read(json::Value root);

    friend bool operator==(const ProtectedFolders&, const ProtectedFolders&) = default;

private:
    std::vector<files::FileUrl> folders_;
};

/// The document of protected folders that belongs to a library: "protected-folders.json" beside the library
/// document, whose every save replaces it as a whole: a program that does not know of protection would drop a
/// key there.
files::FileUrl protectedFoldersOf(const files::FileUrl& libraryDocument);

} // namespace lumisort::library
