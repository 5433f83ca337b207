#include "library/LibrarySurvey.h"

#include "library/FolderMatcher.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace lumisort::library {

namespace {

FolderState folderState(files::FileSystem& system, const files::FileUrl& folder) {
    try {
        if (system.status(folder.path(), files::Links::follow).kind != files::FileKind::directory)
            return FolderState::unavailable;
        return system.isReadable(folder.path()) ? FolderState::online : FolderState::unavailable;
    } catch (const files::FileError& error) {
        return error.isMissing() ? FolderState::offline : FolderState::unavailable;
    }
}

/// The stamp of a photo that can be read now, none of another.
std::optional<FileStamp> readableStamp(files::FileSystem& system, const files::FileUrl& url) {
    try {
        if (!system.isReadable(url.path())) return std::nullopt;
        const auto status = system.status(url.path(), files::Links::doNotFollow);
        if (status.kind != files::FileKind::regular) return std::nullopt;
        return FileStamp::of(status);
    } catch (const files::FileError&) {
        return std::nullopt;
    }
}

std::vector<FolderMatcher> matchersOf(std::span<const files::FileUrl> folders) {
    return {folders.begin(), folders.end()};
}

bool isInsideAny(std::span<const FolderMatcher> folders, const Photo& photo) {
    return std::ranges::any_of(folders,
                               [&](const FolderMatcher& folder) { return folder.contains(photo.url); });
}

} // namespace

std::string_view title(FolderState state) {
    switch (state) {
    case FolderState::online:
        return "Online";
    case FolderState::offline:
        return "Offline";
    case FolderState::unavailable:
        break;
    }
    return "Unavailable";
}

LibrarySurvey survey(files::FileSystem& system, std::span<const files::FileUrl> folders,
                     std::span<const Photo> photos, const std::stop_token& stop) {
    LibrarySurvey found;
    std::vector<FolderMatcher> online;
    for (const auto& folder : folders) {
        tasks::checkCancelled(stop);
        const auto state = folderState(system, folder);
        found.folders[folder] = state;
        if (state == FolderState::online) online.emplace_back(folder);
    }
    found.stamps.reserve(photos.size());
    for (const auto& photo : photos) {
        tasks::checkCancelled(stop);
        found.stamps.push_back(isInsideAny(online, photo) ? readableStamp(system, photo.url) : std::nullopt);
    }
    return found;
}

std::vector<Photo> photosInside(std::span<const Photo> photos, std::span<const files::FileUrl> folders) {
    const auto matchers = matchersOf(folders);
    std::vector<Photo> inside;
    std::ranges::copy_if(photos, std::back_inserter(inside),
                         [&](const Photo& photo) { return isInsideAny(matchers, photo); });
    return inside;
}

} // namespace lumisort::library
