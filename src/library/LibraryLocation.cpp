#include "library/LibraryLocation.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace lumisort::library {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing sets it
    return value ? value : "";
}

std::string homeFolder() {
    if (auto home = environment("HOME"); home.starts_with('/')) return home;
    std::vector<char> buffer(16'384);
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    return found && found->pw_dir ? found->pw_dir : "/";
}

/// The XDG base directory rules: a relative value counts as none.
std::string dataFolder() {
    if (auto named = environment("XDG_DATA_HOME"); named.starts_with('/')) return named;
    return homeFolder() + "/.local/share";
}

} // namespace

files::FileUrl libraryLocation() {
    if (const auto named = environment("LUMISORT_TEST_SESSION"); !named.empty())
        return files::FileUrl::fromPath(named);
    return files::FileUrl::fromPath(dataFolder()).child("Lumisort/library.json");
}

} // namespace lumisort::library
