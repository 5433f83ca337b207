// Files are reached through files::FileSystem, so that tests can make every operation fail.

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace lumisort::test {

namespace {

namespace fs = std::filesystem;

/// Headers whose functions reach files past the interface.
constexpr std::array<std::string_view, 18> forbidden{
    "<fstream>",
    "<filesystem>",
    "<fcntl.h>",
    "<dirent.h>",
    "<sys/stat.h>",
    "<sys/statvfs.h>",
    "<sys/vfs.h>",
    "<QFile>",
    "<QDir>",
    "<QDirIterator>",
    "<QFileInfo>",
    "<QSaveFile>",
    "<QTemporaryDir>",
    "<QTemporaryFile>",
    "\"platform/files/CopyFile.h\"",
    "\"platform/files/Descriptor.h\"",
    "\"platform/files/FolderListing.h\"",
    "\"platform/files/MoveFile.h\"",
};

/// Rooms and files that may include them, and what for.
const std::map<std::string, std::string> exceptions = {
    {"platform/files", "is the interface"},
    {"platform/volumes", "reads what the kernel shows in /proc and /sys"},
    {"platform/images", "finds the decoding library; decoders open photos at their paths"},
    {"similarity/featureprint", "finds the weights beside the program"},
    {"similarity/database", "lets SQLite open its database, and sets a damaged one aside"},
    {"library/FolderMatcher.cpp", "takes paths apart as text"},
    {"film/editor/FilmEditorModel.cpp", "takes names apart as text"},
    {"ui/FolderPlaces.cpp", "offers places in the folder chooser"},
    {"app/commandline/Folders.cpp", "makes absolute paths of arguments"},
    {"app/desktop", "names sockets, reads /proc, keeps the self-test's own folder"},
};

bool includesForbidden(const fs::path& file) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with("#include "))
            for (const auto header : forbidden)
                if (line.starts_with("#include " + std::string(header))) return true;
    return false;
}

/// The entry of `exceptions` for a file: its own or that of a folder around it; empty for none.
std::string exceptionFor(std::string path) {
    while (!path.empty() && !exceptions.contains(path)) {
        const auto slash = path.rfind('/');
        path.resize(slash == std::string::npos ? 0 : slash);
    }
    return path;
}

TEST(FileAccess, GoesThroughTheInterfaceOrIsListed) {
    const auto sources = fs::path(LUMISORT_SOURCE_DIR) / "src";
    std::set<std::string> used, unlisted;
    for (const auto& entry : fs::recursive_directory_iterator(sources)) {
        if (!entry.is_regular_file() || !includesForbidden(entry.path())) continue;
        const auto file = fs::relative(entry.path(), sources).string();
        const auto exception = exceptionFor(file);
        (exception.empty() ? unlisted : used).insert(exception.empty() ? file : exception);
    }
    EXPECT_THAT(unlisted, testing::IsEmpty());
    for (const auto& [path, reason] : exceptions)
        EXPECT_TRUE(used.contains(path)) << path << " needs no exception any more";
}

} // namespace

} // namespace lumisort::test
