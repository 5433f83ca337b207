#include "model/Selection.h"

#include <algorithm>
#include <utility>

namespace lumisort::model {

using files::FileUrl;
using library::Photo;

Selection::Selection(Library& library) : library_(library) {
    connect(&library, &Library::availabilityChanged, this, &Selection::dropUnreadable);
    connect(&library, &Library::folderRemoved, this, &Selection::clear);
    connect(&library, &Library::renamed, this, &Selection::follow);
}

std::vector<Photo> Selection::picked() const {
    std::vector<PhotoRow> rows;
    for (const auto& url : selected_)
        if (const auto row = library_.row(url)) rows.push_back(*row);
    std::ranges::sort(rows);
    std::vector<Photo> photos;
    for (const PhotoRow row : rows) photos.push_back(library_.photos()[row]);
    return photos;
}

std::optional<Photo> Selection::detailPhoto() const {
    if (selected_.empty()) return std::nullopt;
    if (focused_ && library_.isReadable(*focused_)) return library_.photo(*focused_);
    const auto photos = picked();
    return photos.empty() ? std::nullopt : std::optional(photos.front());
}

void Selection::toggle(const Photo& photo) {
    if (!library_.isReadable(photo)) return;
    auto selected = selected_;
    if (selected.erase(photo.url) == 0) selected.insert(photo.url);
    focused_ = photo.url;
    assign(std::move(selected));
}

bool Selection::add(const Photo& photo) {
    if (!library_.isReadable(photo)) return false;
    auto selected = selected_;
    selected.insert(photo.url);
    focused_ = photo.url;
    assign(std::move(selected));
    return true;
}

void Selection::set(std::unordered_set<FileUrl> photos, const std::optional<FileUrl>& focus) {
    std::erase_if(photos, [this](const FileUrl& url) { return !library_.isReadable(url); });
    if (focus && photos.contains(*focus)) focused_ = focus;
    assign(std::move(photos));
}

void Selection::assign(std::unordered_set<FileUrl> selected) {
    assertMainThread();
    if (selected.empty()) focused_.reset();
    selected_ = std::move(selected);
    Q_EMIT changed();
}

void Selection::dropUnreadable() {
    auto selected = selected_;
    if (std::erase_if(selected, [this](const FileUrl& url) { return !library_.isReadable(url); }) > 0)
        assign(std::move(selected));
}

void Selection::follow(const FileUrl& before, const Photo& after) {
    const bool inFocus = focused_ == before;
    if (inFocus) focused_ = after.url;
    auto selected = selected_;
    const bool chosen = selected.erase(before) > 0;
    if (chosen) selected.insert(after.url);
    if (chosen || inFocus) assign(std::move(selected));
}

} // namespace lumisort::model
