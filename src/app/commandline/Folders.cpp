#include "app/commandline/Folders.h"

#include "app/commandline/Text.h"
#include "library/FolderScan.h"
#include "platform/files/FileSystem.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>

namespace lumisort::app {

namespace {

bool liesInside(const std::string& path, const std::string& folder) {
    if (folder == "/") return path != "/";
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

} // namespace

files::FileUrl fileArgument(const std::string& argument) {
    const auto absolute = files::FileUrl::fromPath(argument);
    return files::FileUrl::fromPath(std::filesystem::path(absolute.path()).lexically_normal().string());
}

files::FileUrl folderArgument(const std::string& argument, std::string_view action) {
    auto folder = fileArgument(argument);
    auto& system = files::FileSystem::real();
    try {
        if (system.status(folder.path(), files::Links::follow).kind != files::FileKind::directory)
            throw files::FileError(action, folder.path(), ENOTDIR);
    } catch (const files::FileError& error) {
        throw files::FileError(action, folder.path(), error.code());
    }
    if (!system.isReadable(folder.path())) throw files::FileError(action, folder.path(), EACCES);
    return folder;
}

std::vector<files::FileUrl> folderArguments(const std::vector<std::string>& arguments) {
    std::vector<files::FileUrl> all;
    for (const auto& argument : arguments) {
        auto folder = folderArgument(argument, "scan");
        if (std::ranges::find(all, folder.path(), &files::FileUrl::path) == all.end())
            all.push_back(std::move(folder));
    }
    std::vector<files::FileUrl> outermost;
    std::ranges::copy_if(all, std::back_inserter(outermost), [&](const files::FileUrl& folder) {
        return std::ranges::none_of(
            all, [&](const files::FileUrl& other) { return liesInside(folder.path(), other.path()); });
    });
    return outermost;
}

FoundPhotos scanFolders(const std::vector<files::FileUrl>& folders, Dependencies& deps) {
    FoundPhotos found;
    for (const auto& folder : folders) {
        const auto before = found.photos.size();
        auto scanned = library::scanFolder(
            files::FileSystem::real(), folder,
            [&](std::size_t count) {
                deps.progress.show(-1, "Scanning " + counted(before + count, "photo") + "…");
            },
            deps.stop);
        std::ranges::move(scanned.photos, std::back_inserter(found.photos));
        found.skipped += scanned.skipped;
    }
    deps.progress.clear();
    tasks::checkCancelled(deps.stop);
    return found;
}

} // namespace lumisort::app
