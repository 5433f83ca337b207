#include "platform/files/DurableFolders.h"

#include "platform/files/FileUrl.h"

#include <vector>

namespace lumisort::files {

namespace {

bool isMissing(FileSystem& system, const std::string& path) {
    try {
        system.status(path, Links::follow);
        return false;
    } catch (const FileError& error) {
        return error.isMissing();
    }
}

} // namespace

void createDurableFolders(FileSystem& system, const std::string& path) {
    std::vector<std::string> toFlush;
    for (std::string folder = path; folder != "/" && isMissing(system, folder);) {
        folder = FileUrl::fromPath(folder).parent().path();
        toFlush.push_back(folder);
    }
    system.createDirectories(path);
    for (const auto& folder : toFlush) system.flushDirectory(folder);
}

} // namespace lumisort::files
