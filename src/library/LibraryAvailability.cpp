#include "library/LibraryAvailability.h"

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
std::optional<FingerprintStamp> readableStamp(files::FileSystem& system, const files::FileUrl& url) {
    try {
        if (!system.isReadable(url.path())) return std::nullopt;
        const auto status = system.status(url.path(), files::Links::doNotFollow);
        if (status.kind != files::FileKind::regular) return std::nullopt;
        return FingerprintStamp::of(status);
    } catch (const files::FileError&) {
        return std::nullopt;
    }
}

std::vector<FolderMatcher> containers(std::span<const files::FileUrl> folders) {
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

LibraryAvailability LibraryAvailability::inspect(files::FileSystem& system,
                                                 std::span<const files::FileUrl> folders,
                                                 std::span<const Photo> photos, const std::stop_token& stop) {
    auto seen = survey(system, folders, photos, stop);
    LibraryAvailability found{.folders = std::move(seen.folders)};
    for (std::size_t i = 0; i < photos.size(); ++i) {
        if (!seen.stamps[i]) continue;
        found.readable.insert(photos[i].url);
        found.stamps.emplace(photos[i].url, *seen.stamps[i]);
    }
    return found;
}

std::vector<Photo> LibraryAvailability::retaining(std::span<const Photo> photos,
                                                  std::span<const files::FileUrl> folders) {
    const auto remaining = containers(folders);
    std::vector<Photo> kept;
    std::ranges::copy_if(photos, std::back_inserter(kept),
                         [&](const Photo& photo) { return isInsideAny(remaining, photo); });
    return kept;
}

} // namespace lumisort::library
