#include "organize/AbandonedFiles.h"

#include "organize/OrganizeReport.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace lumisort::organize {

namespace {

constexpr std::string_view runPrefix = "Lumisort-";
constexpr std::string_view ending = ".partial";

/// ".<UUID>.partial" or ".Lumisort-report.json.partial".
bool isHiddenFileOfARun(std::string_view name) {
    constexpr std::size_t uuidLength = 36;
    if (!name.starts_with('.') || !name.ends_with(ending)) return false;
    const auto stem = name.substr(1, name.size() - 1 - ending.size());
    const auto isUuidCharacter = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || c == '-';
    };
    return stem == reportFileName ||
           (stem.size() == uuidLength && std::ranges::all_of(stem, isUuidCharacter));
}

template <class Wanted>
std::vector<std::string> entriesOf(files::FileSystem& system, const std::string& folder, files::FileKind kind,
                                   Wanted isWanted) {
    std::vector<std::string> paths;
    system.eachEntry(folder, files::Links::follow, [&](std::string_view name, files::FileKind present) {
        if (present == kind && isWanted(name)) paths.push_back(folder + '/' + std::string(name));
        return true;
    });
    return paths;
}

void removeHiddenFiles(files::FileSystem& system, const std::string& run) {
    try {
        const auto lock = system.tryLockFolder(run);
        if (!lock) return;
        removePartialFiles(system, run);
    } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): see the header
    }
}

} // namespace

void removePartialFiles(files::FileSystem& system, const std::string& run) {
    for (const auto& path : entriesOf(system, run, files::FileKind::regular, isHiddenFileOfARun))
        system.remove(path);
}

void removeAbandonedFiles(files::FileSystem& system, const std::string& destination) {
    const auto isRun = [](std::string_view name) { return name.starts_with(runPrefix); };
    try {
        for (const auto& run : entriesOf(system, destination, files::FileKind::directory, isRun))
            removeHiddenFiles(system, run);
    } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): see the header
    }
}

} // namespace lumisort::organize
