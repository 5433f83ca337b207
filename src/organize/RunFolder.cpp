#include "organize/RunFolder.h"

#include <cerrno>
#include <string_view>

namespace lumisort::organize {

namespace {

constexpr std::string_view runPrefix = "Lumisort-";

bool hasDots(std::string_view path) {
    return path.find("/./") != std::string_view::npos || path.find("/../") != std::string_view::npos ||
           path.find("//") != std::string_view::npos || path.ends_with("/.") || path.ends_with("/..");
}

} // namespace

std::vector<files::FileUrl> runFolders(files::FileSystem& system, const files::FileUrl& destination) {
    std::vector<files::FileUrl> folders;
    try {
        system.eachEntry(destination.path(), files::Links::follow,
                         [&](std::string_view name, files::FileKind kind) {
                             if (kind == files::FileKind::directory && name.starts_with(runPrefix))
                                 folders.push_back(destination.child(name));
                             return true;
                         });
    } catch (const files::FileError&) {
        return {};
    }
    return folders;
}

bool isUnderWay(files::FileSystem& system, const files::FileUrl& run) {
    try {
        if (system.tryLockFolder(run.path())) return false;
        // Null also where folders cannot be locked at all; then the one around it cannot be, either.
        return system.tryLockFolder(run.parent().path()) != nullptr;
    } catch (const files::FileError&) {
        return false;
    }
}

void requireRegularFile(files::FileSystem& system, const std::string& path) {
    const auto kind = system.status(path, files::Links::doNotFollow).kind;
    if (kind == files::FileKind::symbolicLink) throw files::FileError("read", path, "It is a symbolic link");
    if (kind != files::FileKind::regular) throw files::FileError("read", path, "It is not a regular file");
}

std::optional<files::FileUrl> placeNow(const files::FileUrl& place, const files::FileUrl& then,
                                       const files::FileUrl& now) {
    const auto& path = place.path();
    const auto& folder = then.path();
    if (!path.starts_with(folder + '/') || path.size() == folder.size() + 1 || hasDots(path))
        return std::nullopt;
    return now.child(std::string_view(path).substr(folder.size() + 1));
}

bool isReachedThroughFolders(files::FileSystem& system, const files::FileUrl& place,
                             const files::FileUrl& run) {
    for (auto folder = place.parent(); folder.path().size() > run.path().size(); folder = folder.parent()) {
        try {
            if (system.status(folder.path(), files::Links::doNotFollow).kind != files::FileKind::directory)
                return false;
        } catch (const files::FileError& error) {
            if (!error.isMissing()) throw;
        }
    }
    return true;
}

} // namespace lumisort::organize
