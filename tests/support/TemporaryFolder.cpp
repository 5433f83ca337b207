#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace lumisort::test {

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "lumisort-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

files::FileUrl TemporaryFolder::write(std::string_view relativePath, std::string_view contents) const {
    const auto target = path_ / relativePath;
    std::filesystem::create_directories(target.parent_path());
    std::ofstream(target, std::ios::binary) << contents;
    return files::FileUrl::fromPath(target.string());
}

std::optional<std::filesystem::path> corpus() {
    const char* named = std::getenv("LUMISORT_CORPUS"); // NOLINT(concurrency-mt-unsafe): nothing sets it
    const std::filesystem::path folder =
        named ? named : std::filesystem::path(LUMISORT_SOURCE_DIR) / ".." / "shared" / "corpus";
    if (!std::filesystem::is_directory(folder)) return std::nullopt;
    return std::filesystem::canonical(folder);
}

} // namespace lumisort::test
