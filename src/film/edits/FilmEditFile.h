#pragma once

#include "film/edits/FilmEditDocument.h"
#include "film/edits/FilmEditStoreError.h"
#include "platform/files/FileUrl.h"

#include <optional>
#include <string>

namespace lumisort::film {

/// What an editor starts from.
struct FilmEditSnapshot {
    FilmSettings settings;
    library::FileStamp stamp; ///< of the photo's file now; the editor passes it back when it saves
    /// Why stored adjustments could not be read; the settings are then those of a new edit.
    std::optional<std::string> persistenceWarning;
};

/// The document of film edits on disk. Settings are bound to the state of the photo's file: where that has
/// changed they are ignored (and kept), and saving is refused. Photos are never touched.
///
/// The operations block; used by one thread at a time. Only the program that holds the library's lock saves.
/// The document is read once and then held; an unreadable one is read anew each time and never written. The
/// file system must outlive the object.
class FilmEditFile {
public:
    FilmEditFile(files::FileSystem& system, files::FileUrl document);

    /// Removes what killed programs left of their saves. For the program that holds the library's lock.
    void removeLeftovers();

    /// The stored settings of the photo, within the editing ranges, or those of a new edit where none hold
    /// for the file as it is. Throws files::FileError when the photo itself cannot be read.
    FilmEditSnapshot load(const files::FileUrl& photo);

    /// Stores the settings, within the editing ranges. Throws FilmEditStoreError::sourceChanged when the
    /// photo's stamp is not `expected`, at the start or right before the document is replaced;
    /// files::FileError and unsupportedFormat as they come. On failure the document is as it was, or, where
    /// only the last flush failed, holds the settings.
    void save(const FilmSettings& settings, const files::FileUrl& photo, const library::FileStamp& expected);

private:
    const FilmEditDocument& read();
    FilmSettings settingsFor(const std::string& photo, const library::FileStamp& stamp);
    void requireUnchanged(const files::FileUrl& photo, const library::FileStamp& expected);

    files::FileSystem& system_;
    const files::FileUrl url_;
    std::optional<FilmEditDocument> document_; ///< as it is on disk; none where that is not known
};

/// The document of film edits that belongs to a library: "film-edits.json" beside the library document.
files::FileUrl filmEditsOf(const files::FileUrl& libraryDocument);

} // namespace lumisort::film
