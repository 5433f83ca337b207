#pragma once

#include "model/MainThreadObject.h"
#include "model/SearchNames.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lumisort::model {

/// The photos, folders and marks of the library and what is known of the files behind them, with signals of
/// every change. One instance per process, on the main thread.
class Library : public MainThreadObject {
    Q_OBJECT
    Q_PROPERTY(int keptCount READ keptCount NOTIFY countsChanged)
    Q_PROPERTY(int skipCount READ skipCount NOTIFY countsChanged)
    Q_PROPERTY(int availableCount READ availableCount NOTIFY countsChanged)
    Q_PROPERTY(int unavailableCount READ unavailableCount NOTIFY countsChanged)
    Q_PROPERTY(int recordedCount READ recordedCount NOTIFY countsChanged)
    Q_PROPERTY(int thumbnailRevision READ thumbnailRevision NOTIFY thumbnailRevisionChanged)

public:
    const LibraryState& state() const { return state_; }
    const std::vector<library::Photo>& photos() const { return state_.photos(); }
    const std::vector<files::FileUrl>& folders() const { return state_.folders(); }
    const library::ReviewMarks& reviewMarks() const { return state_.marks(); }
    std::vector<library::Photo> availablePhotos() const;
    std::optional<library::Photo> photo(const files::FileUrl& url) const;
    /// The position of a photo in `photos`.
    std::optional<PhotoRow> row(const files::FileUrl& url) const { return state_.find(url); }
    bool isReadable(const files::FileUrl& url) const;
    bool isReadable(const library::Photo& photo) const { return isReadable(photo.url); }
    /// The mark that holds now: of a readable photo whose file is as it was when it was marked.
    std::optional<library::ReviewDecision> decision(const library::Photo& photo) const;
    std::optional<library::FolderState> folderState(const files::FileUrl& folder) const {
        return state_.folderState(folder);
    }
    /// Whether every folder has been looked at since it is known.
    bool isLookedAt() const;
    int availableCount() const { return static_cast<int>(state_.readableCount()); }
    /// Photos that the latest look could not read; none before the first look at them.
    int unavailableCount() const { return static_cast<int>(state_.unavailableCount()); }
    int keptCount() const { return static_cast<int>(state_.keptCount()); }
    int skipCount() const { return static_cast<int>(state_.skipCount()); }
    int recordedCount() const { return static_cast<int>(photos().size()); }
    /// Whether organizing would have a photo to copy.
    bool hasPhotosToOrganize() const { return state_.eligibleCount() > 0; }
    /// The names of `photos` for searching.
    const SearchNames& searchNames() const;
    /// Rises with every change of the set of photos or folders; an answer about an older one is dropped.
    std::uint64_t revision() const { return revision_; }
    /// Rises when files have changed, so that views ask for previews anew.
    int thumbnailRevision() const { return thumbnailRevision_; }

    /// Replaces everything; `names` are those of the state's photos.
    void restore(LibraryState state, SearchNames names);
    /// Adds a folder and those of the photos that are new. A photo that is known keeps its record.
    void add(const files::FileUrl& folder, const std::vector<library::Photo>& photos);
    /// Drops a folder, the photos that lie in no other folder, and their marks.
    void remove(const files::FileUrl& folder);
    /// Gives the photo at `row` another URL; see LibraryState::rename.
    void rename(PhotoRow row, const library::Photo& after);
    /// Applies a look at the files. Returns whether it found anything different.
    bool apply(library::LibrarySurvey survey);
    /// Marks the photo at `row` with the stamp that its file has now. The caller ends a series of marks with
    /// marksApplied().
    void mark(PhotoRow row, std::optional<library::ReviewDecision> decision, const library::FileStamp& fresh);
    /// Stores a mark as it once was. The caller ends a series with marksApplied().
    void restoreMark(PhotoRow row, const std::optional<library::ReviewMark>& mark);
    void marksApplied();

Q_SIGNALS:
    /// Rows mean other photos now.
    void photosReplaced();
    void foldersChanged();
    void countsChanged();
    /// What the row of one photo shows has changed.
    void photoChanged(lumisort::model::PhotoRow row);
    /// A series of marks is complete.
    void marksChanged();
    /// A look found files or folders different from what was known of them, or saw them for the first time.
    void availabilityChanged();
    /// The same, but only where files that were known have changed.
    void filesChanged();
    void folderRemoved(const lumisort::files::FileUrl& folder);
    void renamed(const lumisort::files::FileUrl& before, const lumisort::library::Photo& after);
    void thumbnailRevisionChanged();

private:
    void replacePhotos(std::vector<library::Photo> photos);

    LibraryState state_;
    mutable SearchNames names_; ///< updated when asked for
    std::uint64_t revision_ = 0;
    int thumbnailRevision_ = 0;
};

} // namespace lumisort::model
