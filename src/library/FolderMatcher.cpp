#include "library/FolderMatcher.h"

#include <filesystem>

namespace lumisort::library {

namespace {

/// Whether taking dots and doubled slashes out could change `path`; most paths have neither.
bool isStandardized(std::string_view path) {
    return path.find("//") == std::string_view::npos && path.find("/.") == std::string_view::npos;
}

} // namespace

std::string standardizedPath(std::string_view path) {
    std::string result =
        isStandardized(path) ? std::string(path) : std::filesystem::path(path).lexically_normal().string();
    while (result.size() > 1 && result.back() == '/') result.pop_back();
    return result;
}

FolderMatcher::FolderMatcher(const files::FileUrl& folder) : prefix_(standardizedPath(folder.path())) {
    if (prefix_.back() != '/') prefix_ += '/';
}

bool FolderMatcher::contains(const files::FileUrl& item) const {
    const auto holds = [this](std::string_view path) {
        return path.size() > prefix_.size() && path.starts_with(prefix_);
    };
    return isStandardized(item.path()) ? holds(item.path()) : holds(standardizedPath(item.path()));
}

} // namespace lumisort::library
