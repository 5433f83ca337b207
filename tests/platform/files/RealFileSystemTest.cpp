#include "platform/files/AtomicFile.h"
#include "platform/files/CopyFile.h"
#include "platform/files/MoveFile.h"
#include "support/FatVolume.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <fstream>
#include <functional>

namespace lumisort::files {

namespace {

using test::TemporaryFolder;

constexpr std::int64_t limit = 1 << 28;

std::string noise(std::size_t bytes) {
    std::string text(bytes, '\0');
    std::uint32_t state = 1;
    for (auto& c : text) c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return text;
}

int failureOf(const std::function<void()>& operation) {
    try {
        operation();
        return 0;
    } catch (const FileError& error) {
        return error.code();
    }
}

/// A folder in memory, on another device than the temporary folder's.
class SharedMemoryFolder {
public:
    SharedMemoryFolder() {
        std::string pattern = "/dev/shm/lumisort-test-XXXXXX";
        if (mkdtemp(pattern.data())) path_ = pattern;
    }
    ~SharedMemoryFolder() {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

TEST(RealFileSystem, StatusTellsWhatIsThere) {
    const TemporaryFolder folder;
    const auto url = folder.write("a.jpg", "12345");
    const auto link = (folder.path() / "link").string();
    std::filesystem::create_symlink("a.jpg", link);
    auto& system = FileSystem::real();
    const auto status = system.status(url.path(), Links::follow);
    struct stat record{};
    ASSERT_EQ(stat(url.path().c_str(), &record), 0);
    EXPECT_EQ(status.kind, FileKind::regular);
    EXPECT_EQ(status.size, 5);
    EXPECT_EQ(status.device, record.st_dev);
    EXPECT_EQ(status.inode, record.st_ino);
    EXPECT_EQ(status.permissions, record.st_mode & 07777U);
    EXPECT_EQ(status.modified, (FileTime{record.st_mtim.tv_sec, record.st_mtim.tv_nsec}));
    EXPECT_EQ(status.changed, (FileTime{record.st_ctim.tv_sec, record.st_ctim.tv_nsec}));
    EXPECT_LE(status.created.value_or(status.changed), status.changed);
    EXPECT_EQ(system.status(link, Links::follow), status);
    EXPECT_EQ(system.status(link, Links::doNotFollow).kind, FileKind::symbolicLink);
    EXPECT_EQ(system.open(url.path(), Links::follow)->status(), status);
    EXPECT_EQ(system.readLink(link), "a.jpg");
    const std::string far(1000, 'x');
    std::filesystem::create_symlink(far, folder.path() / "far");
    EXPECT_EQ(system.readLink((folder.path() / "far").string()), far);
}

TEST(RealFileSystem, OpensRegularFilesOnlyAndNeverWaits) {
    const TemporaryFolder folder;
    folder.write("a", "A");
    const auto at = [&](const char* name) { return (folder.path() / name).string(); };
    std::filesystem::create_symlink("a", at("link"));
    std::filesystem::create_symlink("circle", at("circle"));
    ASSERT_EQ(mkfifo(at("pipe").c_str(), 0600), 0);
    auto& system = FileSystem::real();
    EXPECT_EQ(failureOf([&] { system.open(at("link"), Links::follow); }), 0);
    EXPECT_EQ(failureOf([&] { system.open(at("link"), Links::doNotFollow); }), ELOOP);
    EXPECT_EQ(failureOf([&] { system.open(at("circle"), Links::follow); }), ELOOP);
    EXPECT_THROW(system.open(at("pipe"), Links::follow), FileError);
    EXPECT_THROW(system.open("/dev/null", Links::follow), FileError);
    EXPECT_THROW(system.copy(at("pipe"), at("b"), {}), FileError);
    EXPECT_THROW(replaceFile(system, at("pipe"), "x"), FileError);
}

TEST(CopyFile, EveryMethodOnOneDeviceAndAcrossTwo) {
    const TemporaryFolder folder;
    const SharedMemoryFolder other;
    const auto from = (folder.path() / "from").string();
    std::vector<std::string> targets = {folder.path().string()};
    if (!other.path().empty()) targets.push_back(other.path());
    // The borders of the pieces: 1 MiB through memory, 16 MiB inside the kernel.
    for (const std::size_t bytes : {0UL, 1UL, 1UL << 20, (1UL << 20) + 1, (16UL << 20) + 1}) {
        const auto contents = noise(bytes);
        folder.write("from", contents);
        for (const auto& target : targets)
            for (const auto method :
                 {CopyMethod::sharedBlocks, CopyMethod::insideKernel, CopyMethod::throughMemory}) {
                const auto to = target + "/to";
                const auto source = openForReading(from, 0);
                const auto copy = createExclusively(to, 0600);
                copyContents({source, copy, from, to, statusOf(source, from)}, method, {});
                EXPECT_TRUE(readFile(FileSystem::real(), to, limit) == contents) << bytes << " to " << target;
                std::filesystem::remove(to);
            }
    }
}

TEST(CopyFile, CarriesTimesPermissionsAndUserAttributes) {
    const TemporaryFolder folder;
    const auto from = folder.write("from", "contents").path();
    const timespec times[2] = {{1'000'000'001, 123'456'789}, {-86'400, 987'654'321}};
    ASSERT_EQ(utimensat(AT_FDCWD, from.c_str(), times, 0), 0);
    ASSERT_EQ(chmod(from.c_str(), 04440), 0);
    const std::string tags(200, 't');
    const bool tagged = setxattr(from.c_str(), "user.xdg.tags", tags.data(), tags.size(), 0) == 0;
    const auto to = (folder.path() / "to").string();
    FileSystem::real().copy(from, to, {});
    struct stat record{};
    ASSERT_EQ(stat(to.c_str(), &record), 0);
    EXPECT_EQ(record.st_atim.tv_sec, 1'000'000'001);
    EXPECT_EQ(record.st_atim.tv_nsec, 123'456'789);
    EXPECT_EQ(record.st_mtim.tv_sec, -86'400);
    EXPECT_EQ(record.st_mtim.tv_nsec, 987'654'321);
    EXPECT_EQ(record.st_mode & 07777U, 0440U) << "set-user-id does not travel";
    if (!tagged) GTEST_SKIP() << "the temporary folder's file system holds no user attributes";
    std::string value(300, '\0');
    const auto length = getxattr(to.c_str(), "user.xdg.tags", value.data(), value.size());
    ASSERT_GT(length, 0);
    EXPECT_EQ(value.substr(0, static_cast<std::size_t>(length)), tags);
}

TEST(CopyFile, GeneratedFilesAreCopiedWhole) {
    const TemporaryFolder folder;
    const auto to = (folder.path() / "to").string();
    FileSystem::real().copy("/proc/version", to, {});
    EXPECT_THAT(readFile(FileSystem::real(), to, limit), testing::StartsWith("Linux version"));
}

TEST(CopyFile, ASourceThatChangesIsAFailure) {
    const std::pair<const char*, std::function<void(const std::string&)>> changes[] = {
        {"grows", [](const auto& path) { std::ofstream(path, std::ios::app) << 'x'; }},
        {"shrinks", [](const auto& path) { std::filesystem::resize_file(path, 1000); }},
        {"is rewritten", [](const auto& path) {
             const timespec times[2] = {{0, UTIME_OMIT}, {1, 0}};
             ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
         }}};
    for (const auto& [name, change] : changes)
        for (const auto method : {CopyMethod::insideKernel, CopyMethod::throughMemory}) {
            const TemporaryFolder folder;
            const auto from = folder.write("from", noise(5000)).path();
            const auto to = (folder.path() / "to").string();
            const auto source = openForReading(from, 0);
            const auto before = statusOf(source, from);
            change(from);
            const auto copy = createExclusively(to, 0600);
            EXPECT_THROW(copyContents({source, copy, from, to, before}, method, {}), FileError) << name;
        }
}

using Move = std::function<void(const std::string&, const std::string&)>;

/// What every way of moving promises, in `folder`.
void expectMoveWithoutOverwrite(const Move& move, const std::filesystem::path& folder) {
    const auto at = [&](const char* name) { return (folder / name).string(); };
    const auto write = [&](const char* name, const char* text) { std::ofstream(folder / name) << text; };
    write("a", "A");
    write("b", "B");
    std::filesystem::create_directory(folder / "taken");
    EXPECT_EQ(failureOf([&] { move(at("a"), at("b")); }), EEXIST);
    EXPECT_EQ(failureOf([&] { move(at("a"), at("taken")); }), EEXIST);
    EXPECT_EQ(failureOf([&] { move(at("missing"), at("c")); }), ENOENT);
    EXPECT_EQ(failureOf([&] { move(at("a"), at("none/c")); }), ENOENT);
    EXPECT_FALSE(std::filesystem::exists(folder / "c")) << "a failed move left something at its target";
    EXPECT_EQ(readFile(FileSystem::real(), at("a"), limit), "A");
    EXPECT_EQ(readFile(FileSystem::real(), at("b"), limit), "B");
    move(at("a"), at("c"));
    EXPECT_FALSE(std::filesystem::exists(folder / "a"));
    EXPECT_EQ(readFile(FileSystem::real(), at("c"), limit), "A");
}

TEST(MoveFile, EveryWayKeepsWhatIsThere) {
    const std::pair<const char*, Move> ways[] = {
        {"rename",
         [](const auto& from, const auto& to) {
             if (!moveByExclusiveRename(from, to)) moveByPlaceholder(from, to); // not on every file system
         }},
        {"link", [](const auto& from, const auto& to) { EXPECT_TRUE(moveByLink(from, to)); }},
        {"placeholder", moveByPlaceholder},
        {"whole",
         [](const auto& from, const auto& to) { FileSystem::real().moveWithoutOverwrite(from, to); }}};
    for (const auto& [name, move] : ways) {
        SCOPED_TRACE(name);
        const TemporaryFolder folder;
        expectMoveWithoutOverwrite(move, folder.path());
        // A link that leads nowhere takes the name as well.
        std::filesystem::create_symlink("nowhere", folder.path() / "dangling");
        const auto link = (folder.path() / "dangling").string();
        EXPECT_EQ(failureOf([&] { move((folder.path() / "b").string(), link); }), EEXIST);
        EXPECT_FALSE(std::filesystem::exists(folder.path() / "nowhere"));
    }
}

TEST(VolumeFacts, OfAVolumeThatCountsNoBlocksSayNoFreeSpace) {
    const TemporaryFolder folder;
    const auto facts = FileSystem::real().volumeFacts(folder.path().string());
    EXPECT_GT(facts.availableBytes.value(), 0);
    EXPECT_TRUE(facts.keepsInodes);
    if (mount("none", folder.path().c_str(), "ramfs", 0, nullptr) != 0)
        GTEST_SKIP() << "this machine does not let tests mount a file system";
    EXPECT_EQ(FileSystem::real().volumeFacts(folder.path().string()).availableBytes, std::nullopt);
    ASSERT_EQ(umount(folder.path().c_str()), 0);
}

TEST(Fat, MovesCopiesReplacesAndFillsUp) {
    const test::FatVolume volume(8);
    LUMISORT_NEEDS_FAT(volume);
    auto& system = FileSystem::real();
    const std::filesystem::path folder = volume.path();
    EXPECT_FALSE(system.volumeFacts(volume.path()).keepsInodes);
    expectMoveWithoutOverwrite(
        [&](const auto& from, const auto& to) { system.moveWithoutOverwrite(from, to); }, folder);

    const TemporaryFolder disk;
    const auto contents = noise(4 << 20);
    const auto source = disk.write("a", contents).path();
    system.copy(source, (folder / "copy.jpg").string(), {});
    EXPECT_TRUE(readFile(system, (folder / "copy.jpg").string(), limit) == contents);

    const auto document = (folder / "library.json").string();
    replaceFile(system, document, "old");
    replaceFile(system, document, "new");
    EXPECT_EQ(failureOf([&] { system.copy(source, (folder / "second.jpg").string(), {}); }), ENOSPC);
    EXPECT_EQ(failureOf([&] { replaceFile(system, document, contents); }), ENOSPC);
    EXPECT_EQ(readFile(system, document, limit), "new");
}

} // namespace

} // namespace lumisort::files
