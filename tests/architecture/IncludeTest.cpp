#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumisort::test {

namespace {

/// Folders by floor. The rooms inside one of them share its floor and may use each other in the order in
/// which they are built.
const std::map<std::string, int, std::less<>> floors = {
    {"app", 6},          {"review", 5},  {"organize/sheet", 5}, {"film/edits", 3}, {"film/editor", 5},
    {"model", 4},        {"ui", 4},      {"similarity", 3},     {"organize", 3},   {"film/render", 3},
    {"film/inspect", 3}, {"library", 2}, {"film/optics", 2},    {"platform", 1},
};

std::vector<std::string> linesOf(const std::filesystem::path& file) {
    std::vector<std::string> lines;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// What stands between `before` and `after` in `line`, when it starts with `before`.
std::optional<std::string> between(std::string_view line, std::string_view before, char after) {
    if (!line.starts_with(before)) return std::nullopt;
    line.remove_prefix(before.size());
    return std::string(line.substr(0, line.find(after)));
}

class House {
public:
    explicit House(std::filesystem::path sources) : sources_(std::move(sources)) {
        for (const auto& line : linesOf(sources_ / "CMakeLists.txt"))
            if (const auto room = between(line, "add_subdirectory(", ')')) order_.push_back(*room);
    }

    /// One line for each include of another room that is not further down.
    std::vector<std::string> violations() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(sources_)) {
            const auto extension = entry.path().extension();
            if (extension != ".h" && extension != ".cpp") continue;
            const auto file = std::filesystem::relative(entry.path(), sources_);
            for (const auto& line : linesOf(entry.path()))
                if (const auto header = between(line, "#include \"", '"'))
                    if (const auto problem = problemOf(file.parent_path().string(), *header);
                        !problem.empty())
                        found.push_back(file.string() + ": " + *header + ' ' + problem);
        }
        std::ranges::sort(found);
        return found;
    }

private:
    /// The listed folder that the room is or lies in, "" for none.
    static std::string familyOf(std::string room) {
        while (!floors.contains(room)) {
            const auto slash = room.rfind('/');
            if (slash == std::string::npos) return {};
            room.resize(slash);
        }
        return room;
    }

    std::string problemOf(const std::string& room, const std::string& header) const {
        if (!std::filesystem::exists(sources_ / header)) return "is no header of this program";
        const auto other = std::filesystem::path(header).parent_path().string();
        if (other == room) return {};
        const auto family = familyOf(room), otherFamily = familyOf(other);
        if (family.empty() || otherFamily.empty()) return "is used where a room has no floor";
        if (floors.at(otherFamily) > floors.at(family)) return "is further up";
        if (floors.at(otherFamily) < floors.at(family)) return {};
        if (family != otherFamily) return "is of the same floor";
        return std::ranges::find(order_, other) < std::ranges::find(order_, room) ? "" : "is built later";
    }

    std::filesystem::path sources_;
    std::vector<std::string> order_;
};

TEST(Includes, PointDownTheFloors) {
    const std::filesystem::path sources = std::filesystem::path(LUMISORT_SOURCE_DIR) / "src";
    EXPECT_THAT(House(sources).violations(), testing::IsEmpty());
}

TEST(Includes, ThatPointElsewhereAreFound) {
    struct Case {
        const char *file, *includes, *problem;
    };
    for (const auto& [file, includes, problem] : {
             Case{"organize/Plan.cpp", "library/Photo.h", ""},
             Case{"library/Photo.cpp", "library/Photo.h", ""},
             Case{"similarity/Scan.cpp", "similarity/print/Print.h", ""},
             Case{"platform/files/Url.h", "platform/time/Clock.h", ""},
             Case{"review/Card.cpp", "organize/Plan.h", ""},
             Case{"platform/time/Clock.cpp", "platform/files/Url.h", "is built later"},
             Case{"platform/files/Url.cpp", "library/Photo.h", "is further up"},
             Case{"organize/Plan.cpp", "organize/sheet/Sheet.h", "is further up"},
             Case{"similarity/Scan.cpp", "organize/Plan.h", "is of the same floor"},
             Case{"similarity/print/Print.cpp", "similarity/Scan.h", "is built later"},
             Case{"film/inspect/Chart.cpp", "film/render/Stage.h", "is of the same floor"},
             Case{"attic/Old.cpp", "library/Photo.h", "is used where a room has no floor"},
             Case{"library/Photo.cpp", "Photo.h", "is no header of this program"},
         }) {
        const TemporaryFolder folder;
        folder.write("CMakeLists.txt", "add_subdirectory(platform/time)\nadd_subdirectory(platform/files)\n"
                                       "add_subdirectory(similarity/print)\nadd_subdirectory(similarity)\n");
        for (const auto* header : {"library/Photo.h", "similarity/Scan.h", "similarity/print/Print.h",
                                   "organize/Plan.h", "organize/sheet/Sheet.h", "platform/time/Clock.h",
                                   "platform/files/Url.h", "film/render/Stage.h"})
            folder.write(header, "#pragma once\n");
        folder.write(file, "#include <vector>\n#include \"" + std::string(includes) + "\"\n");
        std::vector<std::string> expected;
        if (*problem) expected.push_back(std::string(file) + ": " + includes + ' ' + problem);
        EXPECT_EQ(House(folder.path()).violations(), expected);
    }
}

} // namespace

} // namespace lumisort::test
