#pragma once

#include "library/FileStamp.h"
#include "library/LibraryContents.h"
#include "library/LibrarySurvey.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace lumisort::model {

using PhotoRow = std::uint32_t; ///< position of a photo in library order

/// What the library knows, and what follows from it: photos, folders, marks, and which photos can be reached.
/// A plain value without an event loop; everything that concerns one photo costs the same in a library of ten
/// photos and of a million. The model owns one.
class LibraryState {
public:
    using Photos = std::shared_ptr<const std::vector<library::Photo>>;

    LibraryState() = default;
    /// What a document held, of which nothing is known to be reachable yet. Any thread; for a large library
    /// it takes some time.
    explicit LibraryState(library::LibraryContents session);

    const std::vector<library::Photo>& photos() const { return *photos_; }
    /// For a worker: the list as it is now, whatever happens to the library meanwhile.
    Photos sharedPhotos() const { return photos_; }
    const std::vector<files::FileUrl>& folders() const { return folders_; }
    const library::ReviewMarks& marks() const { return marks_; }

    /// Replaces the photos; of two with one URL the first stays. What was known of a photo's reachability
    /// stays with its URL.
    void setPhotos(std::vector<library::Photo> photos);
    void setFolders(std::vector<files::FileUrl> folders);
    void setMarks(library::ReviewMarks marks);

    std::optional<PhotoRow> find(const files::FileUrl& url) const;
    bool isReadable(PhotoRow row) const { return reach_[row].has_value(); }
    /// The photo's stamp in the latest look at it; none while it cannot be read.
    const std::optional<library::FileStamp>& stamp(PhotoRow row) const { return reach_[row]; }
    /// The decision that holds now: of a readable photo whose file is as it was when it was marked.
    std::optional<library::ReviewDecision> decision(PhotoRow row) const;
    /// Whether the latest look at the photo found it unreadable; false before the first look.
    bool isUnavailable(PhotoRow row) const { return looked_[row] && !reach_[row]; }
    /// The photo's mark as it is stored, whether or not it holds now.
    std::optional<library::ReviewMark> mark(PhotoRow row) const;
    std::optional<library::FolderState> folderState(const files::FileUrl& folder) const;

    /// Rows in library order.
    std::vector<PhotoRow> readableRows() const;
    std::size_t readableCount() const { return readableCount_; }
    std::size_t unavailableCount() const { return unavailableCount_; }
    std::size_t keptCount() const { return keptCount_; }
    std::size_t skipCount() const { return skipCount_; }
    /// Readable photos that organizing would copy.
    std::size_t eligibleCount() const { return eligibleCount_; }

    /// How a survey differs from what was known.
    enum class Difference {
        none,
        firstLook, ///< only in photos and folders that no survey had reached before
        change,    ///< also in photos that had been looked at
    };
    /// Compares a survey of these photos and folders with the last one.
    Difference compare(const library::LibrarySurvey& survey) const;
    void apply(library::LibrarySurvey survey);

    /// Notes a fresh stamp and the decision with it, or without a decision removes the mark.
    void mark(PhotoRow row, std::optional<library::ReviewDecision> decision, const library::FileStamp& fresh);
    /// Stores a mark as it once was, or without one removes the mark. The known stamp stays.
    void restoreMark(PhotoRow row, const std::optional<library::ReviewMark>& mark);

    /// Gives the photo at `row` another URL; mark and stamp move with it. A record and a mark that a file
    /// left behind under the new URL are dropped. Returns the photo's row, which is another one when a record
    /// was dropped.
    PhotoRow rename(PhotoRow row, const library::Photo& renamed);

    library::LibraryContents session() const { return {*photos_, folders_, marks_}; }

private:
    void count(PhotoRow row, int step);
    void recount();

    Photos photos_ = std::make_shared<const std::vector<library::Photo>>();
    std::vector<files::FileUrl> folders_;
    library::ReviewMarks marks_;
    std::unordered_map<files::FileUrl, PhotoRow> rows_;
    std::unordered_map<files::FileUrl, library::FolderState> folderStates_;
    std::vector<std::optional<library::FileStamp>> reach_; ///< by row
    std::vector<bool> looked_;                             ///< by row: a survey has reached the photo
    std::size_t readableCount_ = 0, unavailableCount_ = 0;
    std::size_t keptCount_ = 0, skipCount_ = 0, eligibleCount_ = 0;
};

} // namespace lumisort::model
