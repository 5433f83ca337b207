#include "model/LibraryState.h"

#include "library/OrganizeSelection.h"

#include <algorithm>
#include <utility>

namespace lumisort::model {

using library::FileStamp;
using library::Photo;
using library::ReviewDecision;

LibraryState::LibraryState(library::LibraryContents session)
    : folders_(std::move(session.folders)), marks_(std::move(session.reviewMarks)) {
    setPhotos(std::move(session.photos));
}

void LibraryState::setPhotos(std::vector<Photo> photos) {
    const auto oldRows = std::exchange(rows_, {});
    const auto oldReach = std::exchange(reach_, {});
    const auto oldLooked = std::exchange(looked_, {});
    rows_.reserve(photos.size());
    std::erase_if(photos, [&](const Photo& photo) {
        const auto row = static_cast<PhotoRow>(rows_.size());
        if (!rows_.emplace(photo.url, row).second) return true;
        const auto known = oldRows.find(photo.url);
        reach_.push_back(known != oldRows.end() ? oldReach[known->second] : std::nullopt);
        looked_.push_back(known != oldRows.end() && oldLooked[known->second]);
        return false;
    });
    photos_ = std::make_shared<const std::vector<Photo>>(std::move(photos));
    recount();
}

void LibraryState::setFolders(std::vector<files::FileUrl> folders) {
    folders_ = std::move(folders);
}

void LibraryState::setMarks(library::ReviewMarks marks) {
    marks_ = std::move(marks);
    recount();
}

std::optional<PhotoRow> LibraryState::find(const files::FileUrl& url) const {
    const auto found = rows_.find(url);
    return found != rows_.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<ReviewDecision> LibraryState::decision(PhotoRow row) const {
    if (!reach_[row]) return std::nullopt;
    const auto mark = marks_.find(photos()[row].url.path());
    if (mark == marks_.end() || mark->second.stamp != *reach_[row]) return std::nullopt;
    return mark->second.decision;
}

std::optional<library::FolderState> LibraryState::folderState(const files::FileUrl& folder) const {
    const auto found = folderStates_.find(folder);
    return found != folderStates_.end() ? std::optional(found->second) : std::nullopt;
}

std::vector<PhotoRow> LibraryState::readableRows() const {
    std::vector<PhotoRow> rows;
    rows.reserve(readableCount_);
    for (PhotoRow row = 0; row < reach_.size(); ++row)
        if (reach_[row]) rows.push_back(row);
    return rows;
}

LibraryState::Difference LibraryState::compare(const library::LibrarySurvey& survey) const {
    bool first = survey.folders != folderStates_;
    for (PhotoRow row = 0; row < reach_.size(); ++row) {
        if (!looked_[row])
            first = true;
        else if (survey.stamps[row] != reach_[row])
            return Difference::change;
    }
    return first ? Difference::firstLook : Difference::none;
}

void LibraryState::apply(library::LibrarySurvey survey) {
    folderStates_ = std::move(survey.folders);
    reach_ = std::move(survey.stamps);
    looked_.assign(reach_.size(), true);
    recount();
}

std::optional<library::ReviewMark> LibraryState::mark(PhotoRow row) const {
    const auto mark = marks_.find(photos()[row].url.path());
    return mark != marks_.end() ? std::optional(mark->second) : std::nullopt;
}

void LibraryState::mark(PhotoRow row, std::optional<ReviewDecision> decision, const FileStamp& fresh) {
    count(row, -1);
    reach_[row] = fresh;
    looked_[row] = true;
    const auto& path = photos()[row].url.path();
    if (decision)
        marks_.insert_or_assign(path, library::ReviewMark{*decision, fresh});
    else
        marks_.erase(path);
    count(row, +1);
}

void LibraryState::restoreMark(PhotoRow row, const std::optional<library::ReviewMark>& mark) {
    count(row, -1);
    const auto& path = photos()[row].url.path();
    if (mark)
        marks_.insert_or_assign(path, *mark);
    else
        marks_.erase(path);
    count(row, +1);
}

PhotoRow LibraryState::rename(PhotoRow row, const Photo& renamed) {
    auto photos = *photos_;
    const auto before = std::exchange(photos[row], renamed);
    rows_.erase(before.url);
    marks_.erase(renamed.url.path());
    if (auto mark = marks_.extract(before.url.path())) {
        mark.key() = renamed.url.path();
        marks_.insert(std::move(mark));
    }
    const auto leftBehind = find(renamed.url);
    rows_[renamed.url] = row;
    if (leftBehind) {
        photos.erase(photos.begin() + *leftBehind);
        setPhotos(std::move(photos));
        return rows_.at(renamed.url);
    }
    photos_ = std::make_shared<const std::vector<Photo>>(std::move(photos));
    recount();
    return row;
}

void LibraryState::count(PhotoRow row, int step) {
    const auto by = static_cast<std::size_t>(step);
    if (isUnavailable(row)) unavailableCount_ += by;
    if (!reach_[row]) return;
    readableCount_ += by;
    if (library::isToOrganize(photos()[row], marks_)) eligibleCount_ += by;
    const auto current = decision(row);
    if (current == ReviewDecision::keep) keptCount_ += by;
    if (current == ReviewDecision::cleanup) skipCount_ += by;
}

void LibraryState::recount() {
    readableCount_ = unavailableCount_ = keptCount_ = skipCount_ = eligibleCount_ = 0;
    for (PhotoRow row = 0; row < reach_.size(); ++row) count(row, +1);
}

} // namespace lumisort::model
