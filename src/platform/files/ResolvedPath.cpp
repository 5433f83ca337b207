#include "platform/files/ResolvedPath.h"

#include <cerrno>

namespace lumisort::files {

namespace {

constexpr int mostLinks = 40; // as many as the kernel follows

/// Takes the first component off `rest`, with the slashes around it.
std::string nextComponent(std::string& rest) {
    const auto start = rest.find_first_not_of('/');
    if (start == std::string::npos) {
        rest.clear();
        return {};
    }
    const auto end = std::min(rest.find('/', start), rest.size());
    std::string component = rest.substr(start, end - start);
    rest.erase(0, end);
    return component;
}

} // namespace

std::string resolvedPath(FileSystem& system, const std::string& path) {
    std::string resolved; // without a slash at its end, so "" is the root
    std::string rest = path;
    for (int links = 0; !rest.empty();) {
        const auto component = nextComponent(rest);
        if (component.empty() || component == ".") continue;
        if (component == "..") {
            resolved.erase(std::min(resolved.rfind('/'), resolved.size()));
            continue;
        }
        const auto next = resolved + '/' + component;
        if (system.status(next, Links::doNotFollow).kind != FileKind::symbolicLink) {
            resolved = next;
            continue;
        }
        if (++links > mostLinks) throw FileError("open", path, ELOOP);
        const auto target = system.readLink(next);
        if (target.starts_with('/')) resolved.clear();
        rest = target + '/' + rest;
    }
    return resolved.empty() ? "/" : resolved;
}

} // namespace lumisort::files
