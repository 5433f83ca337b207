#include "support/MemoryTree.h"

#include "platform/files/FileError.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace lumisort::test {

using files::FileError;
using files::FileKind;
using files::Links;

MemoryPlace findInMemory(const MemoryNode::Pointer& root, std::string_view action, const std::string& path,
                         Links links) {
    const MemoryPlace top{.folder = root, .name = {}, .node = root};
    auto place = top;
    std::string rest = path; // what is still to walk
    std::string walked;      // the folder reached so far
    for (int followed = 0;;) {
        const auto start = rest.find_first_not_of('/');
        if (start == std::string::npos) return place;
        if (!place.node) throw FileError(action, path, ENOENT);
        if (!place.node->isFolder()) throw FileError(action, path, ENOTDIR);
        const auto end = std::min(rest.find('/', start), rest.size());
        place.folder = place.node;
        place.name = rest.substr(start, end - start);
        rest.erase(0, end);
        if (place.name == ".") continue;
        if (place.name == "..") {
            walked.erase(std::min(walked.rfind('/'), walked.size()));
            rest.insert(0, std::exchange(walked, {}));
            place = top;
            continue;
        }
        if (place.name.size() > 255) throw FileError(action, path, ENAMETOOLONG);
        const auto entry = place.folder->entries.find(place.name);
        place.node = entry == place.folder->entries.end() ? nullptr : entry->second;
        const bool isLast = rest.find_first_not_of('/') == std::string::npos;
        const bool isLink = place.node && place.node->status.kind == FileKind::symbolicLink;
        if (isLink && (!isLast || links == Links::follow)) {
            if (++followed > 40) throw FileError(action, path, ELOOP);
            const auto& target = place.node->contents;
            rest = (target.starts_with('/') ? target : walked + '/' + target) + rest;
            walked.clear();
            place = top;
        } else {
            walked += '/' + place.name;
        }
    }
}

void forgetUnflushed(MemoryNode& node, bool keepEntries) {
    node.contents = node.contentsOnMedium;
    node.status.size = static_cast<std::int64_t>(node.contents.size());
    if (keepEntries)
        node.entriesOnMedium = node.entries;
    else
        node.entries = node.entriesOnMedium;
    for (const auto& [name, child] : node.entries) forgetUnflushed(*child, keepEntries);
}

void collectFiles(const MemoryNode& folder, const std::string& prefix, std::vector<std::string>& paths) {
    for (const auto& [name, node] : folder.entries) {
        if (node->isFolder())
            collectFiles(*node, prefix + name + '/', paths);
        else
            paths.push_back(prefix + name);
    }
}

} // namespace lumisort::test
