#pragma once

#include "film/optics/FilmSettings.h"
#include "platform/files/FileSystem.h"

#include <optional>
#include <string>
#include <vector>

namespace lumisort::film {

/// Film settings under a name, to be applied to other photos.
struct FilmLook {
    std::string name;
    FilmSettings settings;

    friend bool operator==(const FilmLook&, const FilmLook&) = default;
};

/// The file form of a look: {"name","settings","version":1}, compact, keys sorted.
std::string lookText(const FilmLook& look);

/// The look that a text of that form, such as the clipboard's, holds; none for any other text.
std::optional<FilmLook> lookFromText(std::string text);

/// Reads a look from a file of that form, with its settings within the editing ranges. Throws
/// files::FileError, which names the file, on one that is missing, malformed, of another version, or larger
/// than a look can be.
FilmLook readLook(files::FileSystem& system, const std::string& path);

/// The looks of the user: a folder with one file for each. Operations block; one thread at a time.
class FilmLooks {
public:
    FilmLooks(files::FileSystem& system, std::string folder) : system_(system), folder_(std::move(folder)) {}

    /// All readable looks by name, in natural order; none where there is no folder. Files that are no looks
    /// are passed over.
    std::vector<FilmLook> list() const;
    /// Writes a look, in place of one with the same name. Throws files::FileError.
    void save(const FilmLook& look);
    /// Removes a look; one that is not there is no failure. Throws files::FileError.
    void remove(const std::string& name);

    /// The file that holds the look of that name. Letters, digits, spaces, "-", "_" and all that is not ASCII
    /// stay; other bytes are percent-encoded.
    std::string fileOf(const std::string& name) const;

private:
    files::FileSystem& system_;
    const std::string folder_;
};

} // namespace lumisort::film
