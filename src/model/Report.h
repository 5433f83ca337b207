#pragma once

#include "library/KeptDocuments.h"
#include "library/Photo.h"
#include "model/SimilarityMethod.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lumisort::model {

// What the model has to say: values, of which the window and the command line make their texts.

struct LibraryRestored {};

/// There is no library document yet.
struct NothingToRestore {};

struct RestoreFailed {
    std::string reason;
};

/// A save found documents that it would have overwritten, and kept them.
struct DocumentsKept {
    library::KeptDocuments kept;
};

struct SaveFailed {
    std::string reason;
};

/// The scan of a folder has begun.
struct FolderScanStarted {
    files::FileUrl folder;
};

struct FolderScanProgress {
    std::size_t found = 0; ///< photos
};

/// The scan of a folder is over, and what it found is in the library.
struct ImportSummary {
    std::size_t scanned = 0;    ///< photos in the folder, new or known
    std::size_t unreadable = 0; ///< files that look like photos by name and could not be read as such
    bool stopped = false;       ///< before the end of the folder
};

struct FolderRemoved {};

/// A scan was asked to stop and has not ended yet.
struct Stopping {};

/// A look at the files found something different.
struct AvailabilitySummary {
    std::size_t available = 0, unavailable = 0; ///< photos
};

struct MarkSummary {
    std::size_t marked = 0;      ///< photos whose mark was set, cleared or restored
    std::size_t unavailable = 0; ///< photos left as they were, for they are gone or cannot be read
};

struct PhotoRenamed {
    library::Photo photo; ///< under its new name
};

struct MatchStarted {};

struct MatchProgress {
    std::string text; ///< to be shown as it is
};

/// A scan for matching photos is over.
struct MatchSummary {
    SimilarityMethod method = SimilarityMethod::exact;
    std::size_t groups = 0;
    std::size_t unreadable = 0;
    std::size_t lowDetail = 0;         ///< photos too plain to be compared
    std::vector<std::string> failures; ///< "name: reason" of each photo that could not be analysed
};

/// The database of what earlier searches computed is not used; searches only take longer.
struct StorageProblem {
    std::string line; ///< to be shown as it is
};

/// A document beside the library document could not be read or written.
struct DocumentProblem {
    std::string line; ///< to be shown as it is
};

struct MatchCancelled {};

struct MatchFailed {
    std::string reason;
};

using Report = std::variant<LibraryRestored, NothingToRestore, RestoreFailed, DocumentsKept, SaveFailed,
                            FolderScanStarted, FolderScanProgress, ImportSummary, FolderRemoved, Stopping,
                            AvailabilitySummary, MarkSummary, PhotoRenamed, MatchStarted, MatchProgress,
                            MatchSummary, StorageProblem, DocumentProblem, MatchCancelled, MatchFailed>;

} // namespace lumisort::model
