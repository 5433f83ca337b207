#include "platform/files/FileSystem.h"

#include "platform/tasks/Cancellation.h"
#include "support/MemoryFileSystem.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <functional>
#include <map>

namespace lumisort::files {

namespace {

/// What both file systems promise, tried on the disk and in memory, so that a test in memory is worth as
/// much.
class FileSystems : public testing::TestWithParam<bool> {
protected:
    FileSystem& system() { return GetParam() ? FileSystem::real() : memory_; }
    std::string at(std::string_view name) const { return folder_.path().string() + std::string(name); }

    void SetUp() override { memory_.makeFolder(folder_.path().string()); }

    void write(std::string_view name, std::string_view contents) {
        const auto file = system().create(at(name));
        file->write(std::as_bytes(std::span(contents)));
        file->close();
    }
    std::string read(std::string_view name) {
        const auto file = system().open(at(name), Links::follow);
        std::string contents(4096, '\0');
        contents.resize(file->read(std::as_writable_bytes(std::span(contents))));
        return contents;
    }
    bool exists(std::string_view name) {
        return failureOf([&] { system().status(at(name), Links::doNotFollow); }) != ENOENT;
    }
    /// The errno value with which `operation` fails, 0 when it does not.
    static int failureOf(const std::function<void()>& operation) {
        try {
            operation();
            return 0;
        } catch (const FileError& error) {
            return error.code();
        }
    }

private:
    test::TemporaryFolder folder_;
    test::MemoryFileSystem memory_;
};

INSTANTIATE_TEST_SUITE_P(, FileSystems, testing::Bool(),
                         [](const auto& chosen) { return chosen.param ? "OnDisk" : "InMemory"; });

TEST_P(FileSystems, NothingIsOverwrittenButByReplace) {
    write("/a", "A");
    write("/b", "B");
    system().createDirectory(at("/folder"));
    EXPECT_EQ(failureOf([&] { system().create(at("/a")); }), EEXIST);
    EXPECT_EQ(failureOf([&] { system().copy(at("/a"), at("/b"), {}); }), EEXIST);
    EXPECT_EQ(failureOf([&] { system().moveWithoutOverwrite(at("/a"), at("/b")); }), EEXIST);
    EXPECT_EQ(failureOf([&] { system().moveWithoutOverwrite(at("/a"), at("/folder")); }), EEXIST);
    EXPECT_EQ(failureOf([&] { system().createDirectory(at("/folder")); }), EEXIST);
    EXPECT_EQ(failureOf([&] { system().createDirectory(at("/a")); }), EEXIST);
    EXPECT_EQ(failureOf([&] { system().replace(at("/a"), at("/folder")); }), EISDIR);
    EXPECT_EQ(read("/a") + read("/b"), "AB");
    system().replace(at("/a"), at("/b"));
    EXPECT_EQ(read("/b"), "A");
    EXPECT_FALSE(exists("/a"));
    system().moveWithoutOverwrite(at("/b"), at("/folder/\xff\n"));
    EXPECT_EQ(read("/folder/\xff\n"), "A");
}

TEST_P(FileSystems, WhatIsNotThereFails) {
    write("/a", "A");
    EXPECT_EQ(failureOf([&] { system().open(at("/none"), Links::follow); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().open(at("/a/b"), Links::follow); }), ENOTDIR);
    EXPECT_EQ(failureOf([&] { system().open(at(""), Links::follow); }), EISDIR);
    EXPECT_EQ(failureOf([&] { system().status(at("/none"), Links::follow); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().readLink(at("/a")); }), EINVAL);
    EXPECT_EQ(failureOf([&] { system().create(at("/none/a")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().create(at("/" + std::string(256, 'n'))); }), ENAMETOOLONG);
    EXPECT_EQ(failureOf([&] { system().copy(at("/none"), at("/b"), {}); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().copy(at(""), at("/b"), {}); }), EISDIR);
    EXPECT_EQ(failureOf([&] { system().moveWithoutOverwrite(at("/none"), at("/b")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().replace(at("/none"), at("/b")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().remove(at("/none")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().createDirectory(at("/none/folder")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().flushDirectory(at("/none")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().flushDirectory(at("/a")); }), ENOTDIR);
    EXPECT_EQ(failureOf([&] { system().volumeFacts(at("/none")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().tryLockFolder(at("/none")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { system().tryLockFolder(at("/a")); }), ENOTDIR);
    EXPECT_EQ(failureOf([&] { system().eachEntry(at("/a"), Links::follow, {}); }), ENOTDIR);
    EXPECT_FALSE(exists("/b"));
}

TEST_P(FileSystems, Folders) {
    system().createDirectories(at("/2024/05/"));
    system().createDirectories(at("/2024/05"));
    write("/2024/05/a", "A");
    EXPECT_EQ(failureOf([&] { system().createDirectories(at("/2024/05/a")); }), ENOTDIR);
    EXPECT_EQ(failureOf([&] { system().createDirectories(at("/2024/05/a/b")); }), ENOTDIR);
    EXPECT_EQ(failureOf([&] { system().remove(at("/2024/05")); }), ENOTEMPTY);
    system().flushDirectory(at("/2024/05"));
    system().remove(at("/2024/05/a"));
    system().remove(at("/2024/05"));
    EXPECT_TRUE(exists("/2024"));
    EXPECT_FALSE(exists("/2024/05"));
    EXPECT_EQ(system().status(at("/2024"), Links::follow).kind, FileKind::directory);
    EXPECT_GT(system().volumeFacts(at("/2024")).availableBytes.value(), 0);
    write("/2024/b", "B");
    system().createDirectory(at("/2024/c"));
    std::map<std::string, FileKind> entries;
    system().eachEntry(at("/2024"), Links::doNotFollow, [&](std::string_view name, FileKind kind) {
        return entries.emplace(name, kind).second;
    });
    EXPECT_EQ(entries,
              (std::map<std::string, FileKind>{{"b", FileKind::regular}, {"c", FileKind::directory}}));
    int visits = 0;
    system().eachEntry(at("/2024"), Links::follow, [&](auto, auto) { return ++visits < 1; });
    EXPECT_EQ(visits, 1);

    auto lock = system().tryLockFolder(at("/2024"));
    EXPECT_NE(lock, nullptr);
    EXPECT_EQ(system().tryLockFolder(at("/2024")), nullptr);
    lock.reset();
    EXPECT_NE(system().tryLockFolder(at("/2024")), nullptr);
}

TEST_P(FileSystems, CopiesWithPermissionsAndTimes) {
    const auto file = system().create(at("/a"));
    file->write(std::as_bytes(std::span(std::string_view("contents"))));
    file->setPermissions(0604);
    const auto original = file->status();
    system().copy(at("/a"), at("/b"), {});
    const auto copy = system().status(at("/b"), Links::follow);
    EXPECT_EQ(read("/b"), "contents");
    EXPECT_EQ(copy.permissions, 0604U);
    EXPECT_EQ(copy.modified, original.modified);
    EXPECT_NE(copy.inode, original.inode);
    EXPECT_EQ(original.size, 8);

    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_THROW(system().copy(at("/a"), at("/c"), stopped.get_token()), tasks::Cancelled);
}

TEST_P(FileSystems, FilesReadOnFromTheirPosition) {
    write("/a", "abcdef");
    const auto file = system().open(at("/a"), Links::doNotFollow);
    std::string piece(4, '\0');
    const auto next = [&] { return piece.substr(0, file->read(std::as_writable_bytes(std::span(piece)))); };
    EXPECT_EQ(next(), "abcd");
    file->flush(); // on a file open for reading too: this is how a copy reaches the medium
    file->dropCache();
    EXPECT_EQ(next(), "ef");
    EXPECT_EQ(next(), "");
    EXPECT_EQ(failureOf([&] {
                  file->write({});
                  file->write(std::as_bytes(std::span(piece)));
              }),
              EBADF);
    file->close();
    file->close();
}

} // namespace

} // namespace lumisort::files
