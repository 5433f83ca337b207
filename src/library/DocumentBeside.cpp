#include "library/DocumentBeside.h"

namespace lumisort::library {

void requireFirstVersion(files::FileSystem& system, const std::string& path) {
    std::optional<std::int64_t> version;
    json::readDocument(system, path, [&](json::Value root) {
        json::eachField(root, [&](std::string_view key, json::Value field) {
            if (key == "version") version = json::integer(field);
        });
    });
    if (version != 1) throw files::FileError("read", path, "It is of a version that is not known here");
}

} // namespace lumisort::library
