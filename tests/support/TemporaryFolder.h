#pragma once

#include "platform/files/FileUrl.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace lumisort::test {

/// A fresh folder that goes when the object does.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    files::FileUrl url() const { return files::FileUrl::fromPath(path_.string()); }
    /// Writes a file (and the folders above it) and returns its URL.
    files::FileUrl write(std::string_view relativePath, std::string_view contents) const;

private:
    std::filesystem::path path_;
};

/// The folder of real photos, from the environment variable LUMISORT_CORPUS or beside the checkout
/// (../shared/corpus); none where it is absent. Tests that need it skip then.
std::optional<std::filesystem::path> corpus();

} // namespace lumisort::test

/// Skips the current test, saying why, where the real photos are absent.
#define LUMISORT_NEEDS_CORPUS()                                                                              \
    if (!lumisort::test::corpus()) GTEST_SKIP() << "no corpus of real photos beside this checkout"
