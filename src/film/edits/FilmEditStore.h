#pragma once

#include "film/edits/FilmEditDocument.h"
#include "film/edits/FilmEditStoreError.h"
#include "platform/files/FileUrl.h"

#include <mutex>
#include <optional>
#include <string>

namespace lumisort::film {

/// What an editor starts from.
struct FilmEditSnapshot {
    FilmSettings settings;
    library::FingerprintStamp
        stamp; ///< the photo's file as it is now; the editor hands it back when it saves
    std::optional<std::string> persistenceWarning; ///< why stored adjustments could not be read; then the
                                                   ///< settings are those of a new edit
};

/// Keeps the film settings of every photo that was adjusted in one document. Settings are bound to the state
/// of the photo's file: where that has changed they are ignored (and kept), and saving is refused. Photos are
/// never touched.
///
/// The operations block; they may be called from any thread and run one at a time. The document is read once
/// and then held, as no other program is expected to write it; an unreadable one is read anew each time and
/// never written. The file system must outlive the store.
class FilmEditStore {
public:
    FilmEditStore(files::FileSystem& system, files::FileUrl fileURL);

    /// The application's store, made on first use.
    static FilmEditStore& shared();
    /// "film-edits.json" beside the library document.
    static files::FileUrl defaultLocation();

    /// The stored settings of the photo, within the editing ranges, or those of a new edit where none hold
    /// for the file as it is. Throws files::FileError when the photo itself cannot be read.
    FilmEditSnapshot loadForEditing(const files::FileUrl& url);

    /// Stores the settings, within the editing ranges. Throws FilmEditStoreError::sourceChanged when the
    /// photo is not as `expectedStamp` says, at the start or right before the document is replaced;
    /// files::FileError and unsupportedFormat as they come. On failure the document is as it was.
    void save(const FilmSettings& settings, const files::FileUrl& url,
              const library::FingerprintStamp& expectedStamp);

private:
    const FilmEditDocument& read();
    FilmSettings settingsFor(const std::string& photo, const library::FingerprintStamp& stamp);
    void requireUnchanged(const files::FileUrl& photo, const library::FingerprintStamp& expected);

    files::FileSystem& system_;
    const files::FileUrl fileURL_;
    std::mutex mutex_;                         // held through every operation
    std::optional<FilmEditDocument> document_; // none until it was read
};

} // namespace lumisort::film
