// A new name for one photo, with everything that is known of it.

#include "library/RenamePhoto.h"
#include "model/LibraryModel.h"
#include "model/Utf8.h"

#include <algorithm>

namespace lumisort::model {

using library::Photo;

void LibraryModel::rename(const Photo& photo, std::string_view stem) {
    const auto row = state_.find(photo.url);
    if (busy_ || !row) throw library::RenameError("Please wait for the current task to finish.");
    const auto renamed = library::renamePhoto(with_.system, state_.photos()[*row], stem);
    if (renamed.url == photo.url) return;

    state_.rename(*row, renamed);
    ++libraryRevision_;
    if (auto selected = selected_; selected.erase(photo.url) > 0) {
        selected.insert(renamed.url);
        if (focused_ == photo.url) focused_ = renamed.url;
        setSelected(std::move(selected));
    }
    for (auto& group : similarGroups_) {
        if (group.anchor.url == photo.url) group.anchor = renamed;
        std::ranges::replace_if(
            group.photos, [&](const Photo& each) { return each.url == photo.url; }, renamed);
        if (auto distance = group.distances.extract(photo.url)) {
            distance.key() = renamed.url;
            group.distances.insert(std::move(distance));
        }
    }
    Q_EMIT similarityChanged();
    similarityCache_.erase(photo.url);
    visionCache_.erase(photo.url);
    derivedChanged();
    visible_.touch(*row);
    refreshAvailability();
    ++thumbnailRevision_;
    Q_EMIT thumbnailRevisionChanged();
    say(QStringLiteral("Renamed to ") + fromUtf8(renamed.url.name()));
    saveSession();
}

} // namespace lumisort::model
