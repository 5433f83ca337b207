#pragma once

#include "film/optics/FilmSettings.h"
#include "library/FileStamp.h"
#include "platform/files/FileSystem.h"

#include <map>
#include <string>

namespace lumisort::film {

/// The settings of one photo and the state of its file when they were saved.
struct FilmEditEntry {
    FilmSettings settings;
    library::FileStamp stamp;

    friend bool operator==(const FilmEditEntry&, const FilmEditEntry&) = default;
};

/// All saved film edits, by photo key.
struct FilmEditDocument {
    static constexpr std::int64_t supportedVersion = 1;

    std::map<std::string, FilmEditEntry> photos;

    friend bool operator==(const FilmEditDocument&, const FilmEditDocument&) = default;
};

/// A photo's key: its path with all symbolic links resolved, or, as JSON cannot hold bytes that are no UTF-8,
/// the percent-encoded file URL of such a path.
std::string filmEditKey(const std::string& resolvedPath);

/// The document's text: {"photos":{key:{"settings","stamp"}},"version":1}, compact, keys sorted at every
/// level.
std::string documentText(const FilmEditDocument& document);

/// An empty document where there is no file. Throws files::FileError on one that cannot be read or is
/// malformed, FilmEditStoreError on one of another version, whatever else that holds.
FilmEditDocument readFilmEdits(files::FileSystem& system, const std::string& path);

} // namespace lumisort::film
