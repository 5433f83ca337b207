#include "library/ProtectedFolders.h"

#include "library/FolderMatcher.h"

#include <algorithm>

namespace lumisort::library {

using files::FileUrl;

namespace {

FileUrl standardized(const FileUrl& folder) {
    const auto path = standardizedPath(folder.path());
    return FileUrl::fromPath(path == "/" ? path : path + '/');
}

} // namespace

void ProtectedFolders::add(const FileUrl& folder) {
    auto added = standardized(folder);
    if (std::ranges::find(folders_, added) == folders_.end()) folders_.push_back(std::move(added));
}

void ProtectedFolders::remove(const FileUrl& folder) {
    std::erase(folders_, standardized(folder));
}

std::optional<FileUrl> ProtectedFolders::holding(const FileUrl& photo) const {
    const auto found = std::ranges::find_if(
        folders_, [&](const FileUrl& folder) { return FolderMatcher(folder).contains(photo); });
    return found == folders_.end() ? std::nullopt : std::optional(*found);
}

std::optional<FileUrl> ProtectedFolders::protecting(const FileUrl& folder) const {
    auto itself = standardized(folder);
    return std::ranges::find(folders_, itself) != folders_.end() ? std::optional(std::move(itself))
                                                                 : holding(folder);
}

void ProtectedFolders::write(json::Writer& out) const {
    out.key("folders").beginArray();
    for (const auto& folder : folders_) out.url(folder);
    out.endArray();
}

ProtectedFolders ProtectedFolders::read(json::Value root) {
    std::optional<ProtectedFolders> result;
    json::eachField(root, [&](std::string_view key, json::Value field) {
        if (key != "folders") return;
        result.emplace();
        json::eachElement(field, [&](json::Value folder) { result->add(json::url(folder)); });
    });
    return json::required(std::move(result), "folders");
}

FileUrl protectedFoldersOf(const FileUrl& libraryDocument) {
    return libraryDocument.parent().child("protected-folders.json");
}

} // namespace lumisort::library
