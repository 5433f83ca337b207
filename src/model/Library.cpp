#include "model/Library.h"

#include "library/LibrarySurvey.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace lumisort::model {

using files::FileUrl;
using library::Photo;

std::vector<Photo> Library::availablePhotos() const {
    std::vector<Photo> available;
    available.reserve(state_.readableCount());
    for (const PhotoRow row : state_.readableRows()) available.push_back(photos()[row]);
    return available;
}

std::optional<Photo> Library::photo(const FileUrl& url) const {
    const auto found = row(url);
    return found ? std::optional(photos()[*found]) : std::nullopt;
}

bool Library::isReadable(const FileUrl& url) const {
    const auto found = row(url);
    return found && state_.isReadable(*found);
}

std::optional<library::ReviewDecision> Library::decision(const Photo& photo) const {
    const auto found = row(photo.url);
    return found ? state_.decision(*found) : std::nullopt;
}

bool Library::isLookedAt() const {
    return std::ranges::all_of(folders(),
                               [this](const FileUrl& folder) { return folderState(folder).has_value(); });
}

const SearchNames& Library::searchNames() const {
    names_.update(state_.sharedPhotos());
    return names_;
}

void Library::restore(LibraryState state, SearchNames names) {
    assertMainThread();
    state_ = std::move(state);
    names_ = std::move(names);
    ++revision_;
    Q_EMIT photosReplaced();
    Q_EMIT countsChanged();
    Q_EMIT foldersChanged();
}

void Library::replacePhotos(std::vector<Photo> photos) {
    state_.setPhotos(std::move(photos));
    ++revision_;
    Q_EMIT photosReplaced();
    Q_EMIT countsChanged();
}

void Library::add(const FileUrl& folder, const std::vector<Photo>& found) {
    assertMainThread();
    auto all = photos();
    std::ranges::copy_if(found, std::back_inserter(all),
                         [this](const Photo& photo) { return !row(photo.url); });
    replacePhotos(std::move(all));
    if (std::ranges::find(folders(), folder) != folders().end()) return;
    auto present = folders();
    present.push_back(folder);
    state_.setFolders(std::move(present));
    ++revision_;
    Q_EMIT foldersChanged();
}

void Library::remove(const FileUrl& folder) {
    assertMainThread();
    auto remaining = folders();
    std::erase(remaining, folder);
    auto kept = library::photosInside(photos(), remaining);
    std::unordered_set<std::string_view> paths;
    for (const auto& photo : kept) paths.insert(photo.url.path());
    auto marks = reviewMarks();
    std::erase_if(marks, [&](const auto& entry) { return !paths.contains(entry.first); });
    state_.setFolders(std::move(remaining));
    state_.setMarks(std::move(marks));
    replacePhotos(std::move(kept));
    Q_EMIT foldersChanged();
    Q_EMIT folderRemoved(folder);
}

void Library::rename(PhotoRow row, const Photo& after) {
    assertMainThread();
    const auto before = photos()[row].url;
    const auto recorded = photos().size();
    const auto present = state_.rename(row, after);
    ++revision_;
    if (photos().size() != recorded) { // a photo that was remembered under the new name
        Q_EMIT photosReplaced();
        ++thumbnailRevision_;
        Q_EMIT thumbnailRevisionChanged();
    }
    Q_EMIT renamed(before, after);
    Q_EMIT photoChanged(present);
    Q_EMIT countsChanged();
}

bool Library::apply(library::LibrarySurvey survey) {
    assertMainThread();
    const auto difference = state_.compare(survey);
    if (difference == LibraryState::Difference::none) return false;
    state_.apply(std::move(survey));
    Q_EMIT availabilityChanged();
    Q_EMIT countsChanged();
    if (difference != LibraryState::Difference::change) return true;
    Q_EMIT filesChanged();
    ++thumbnailRevision_;
    Q_EMIT thumbnailRevisionChanged();
    return true;
}

void Library::mark(PhotoRow row, std::optional<library::ReviewDecision> decision,
                   const library::FileStamp& fresh) {
    assertMainThread();
    state_.mark(row, decision, fresh);
    Q_EMIT photoChanged(row);
}

void Library::restoreMark(PhotoRow row, const std::optional<library::ReviewMark>& mark) {
    assertMainThread();
    state_.restoreMark(row, mark);
    Q_EMIT photoChanged(row);
}

void Library::marksApplied() {
    Q_EMIT marksChanged();
    Q_EMIT countsChanged();
}

} // namespace lumisort::model
