// ARCHITECTURE.md against the folders that are there.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace lumisort::test {

namespace {

namespace fs = std::filesystem;

const fs::path root = LUMISORT_SOURCE_DIR;

/// The folders of the first table: "| 5 | `review/viewer/` | … |".
std::set<std::string> mappedRooms() {
    std::set<std::string> rooms;
    std::ifstream map(root / "ARCHITECTURE.md");
    for (std::string line; std::getline(map, line);) {
        const auto start = line.find("| `");
        const auto end = line.find("/` |");
        if (line.starts_with('|') && start != std::string::npos && end != std::string::npos)
            rooms.insert(line.substr(start + 3, end - start - 3));
    }
    return rooms;
}

/// The folders that hold code.
std::set<std::string> rooms() {
    std::set<std::string> rooms;
    for (const auto& entry : fs::recursive_directory_iterator(root / "src")) {
        const auto extension = entry.path().extension();
        if (extension == ".h" || extension == ".cpp" || extension == ".qml")
            rooms.insert(fs::relative(entry.path().parent_path(), root / "src").string());
    }
    return rooms;
}

TEST(Map, HasARowForEachRoomAndNoOther) {
    EXPECT_THAT(mappedRooms(), testing::ContainerEq(rooms()));
}

} // namespace

} // namespace lumisort::test
