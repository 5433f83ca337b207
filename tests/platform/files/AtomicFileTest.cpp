#include "platform/files/AtomicFile.h"

#include "support/MemoryFileSystem.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>

namespace lumisort::files {

namespace {

using test::Crashed;
using test::MemoryFileSystem;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string document = "/data/library.json";

TEST(AtomicFile, AFailureAtAnyOperationLeavesOldOrNewAndNoTemporaryFile) {
    for (const bool present : {true, false}) {
        std::size_t n = 0;
        for (;; ++n) {
            MemoryFileSystem system;
            system.makeFolder("/data");
            if (present) system.write(document, "old");
            system.failAt(n, EIO);
            bool failed = false;
            try {
                replaceFile(system, document, "new contents");
            } catch (const FileError& error) {
                failed = true;
                EXPECT_EQ(error.path(), document) << "operation " << n;
                EXPECT_EQ(error.code(), EIO);
            }
            EXPECT_EQ(failed, system.faultMet()) << "operation " << n << " failed in silence";
            if (!system.faultMet()) break;
            const auto contents = system.contents(document);
            const auto before = present ? std::optional<std::string>("old") : std::nullopt;
            EXPECT_TRUE(contents == "new contents" || contents == before) << "operation " << n;
            const std::vector<std::string> expected(contents ? 1 : 0, document);
            EXPECT_EQ(system.filesBelow("/"), expected) << "operation " << n;
        }
        EXPECT_GE(n, 6U); // status, create, write, flush, close, replace, flushDirectory
    }
}

TEST(AtomicFile, ACrashAtAnyOperationLeavesOldOrNewWhole) {
    using Entries = MemoryFileSystem::UnflushedEntries;
    for (const auto entries : {Entries::lost, Entries::kept}) {
        bool finished = false;
        for (std::size_t n = 0; !finished; ++n) {
            MemoryFileSystem system;
            system.write(document, "old");
            system.crashAt(n);
            try {
                replaceFile(system, document, "new contents");
                finished = true;
            } catch (const Crashed&) {
            }
            system.restart(entries);
            const auto contents = system.contents(document);
            EXPECT_TRUE(contents == "new contents" || (!finished && contents == "old")) << "operation " << n;
        }
    }
}

TEST(AtomicFile, AFullDiskKeepsTheOldContents) {
    MemoryFileSystem system;
    system.write(document, "old");
    system.setFreeBytes(5);
    try {
        replaceFile(system, document, "new contents");
        FAIL() << "twelve bytes went where five fit";
    } catch (const FileError& error) {
        EXPECT_STREQ(error.what(), "Could not write “/data/library.json”: No space left on device");
    }
    EXPECT_EQ(system.contents(document), "old");
    EXPECT_THAT(system.filesBelow("/"), ElementsAre(document));
}

TEST(AtomicFile, FollowsLinks) {
    MemoryFileSystem system;
    system.write("/disk/real.json", "old");
    system.makeLink("/data/second", "../disk/real.json");
    system.makeLink("/data/first", "second");
    system.makeLink("/data/dangling", "/disk/new.json");
    system.makeLink("/data/circle", "circle");
    replaceFile(system, "/data/first", "new");
    replaceFile(system, "/data/dangling", "created");
    EXPECT_EQ(system.readLink("/data/first"), "second");
    EXPECT_EQ(system.contents("/disk/real.json"), "new");
    EXPECT_EQ(system.contents("/disk/new.json"), "created");
    EXPECT_THROW(replaceFile(system, "/data/circle", "x"), FileError);
}

TEST(AtomicFile, LeftoversOfOneFileAreRemovedAndNoOthers) {
    MemoryFileSystem system;
    system.write("/disk/real.json", "old");
    system.makeLink("/data/link.json", "../disk/real.json");
    const auto atLink = temporaryPath("/data/link.json"), atTarget = temporaryPath("/disk/real.json");
    const auto another = temporaryPath("/data/another.json");
    for (const auto& path : {atLink, atTarget, another, std::string("/data/.lumisort-mine.tmp")})
        system.write(path, "half");
    system.makeFolder(temporaryPath("/data/link.json"));
    removeLeftovers(system, "/data/link.json");
    EXPECT_THAT(system.filesBelow("/"), testing::UnorderedElementsAre(another, "/data/.lumisort-mine.tmp",
                                                                      "/data/link.json", "/disk/real.json"));
    EXPECT_NO_THROW(removeLeftovers(system, "/missing/a.json"));
}

TEST(AtomicFile, OnTheDisk) {
    const test::TemporaryFolder folder;
    auto& system = FileSystem::real();
    const auto longest = (folder.path() / std::string(255, 'n')).string();
    replaceFile(system, longest, "first");
    ASSERT_EQ(chmod(longest.c_str(), 0640), 0);
    replaceFile(system, longest, "second");
    EXPECT_EQ(readFile(system, longest, 6), "second");
    EXPECT_EQ(system.status(longest, Links::follow).permissions, 0640U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);

    EXPECT_THROW(replaceFile(system, folder.path().string(), "x"), FileError);
    EXPECT_THROW(replaceFile(system, (folder.path() / "missing" / "a").string(), "x"), FileError);
    EXPECT_THROW(replaceFile(system, longest + "/a", "x"), FileError);
}

TEST(ReadFile, KeepsToItsLimit) {
    MemoryFileSystem system;
    system.write("/a", "123456");
    EXPECT_EQ(readFile(system, "/a", 6), "123456");
    EXPECT_THROW(readFile(system, "/a", 5), FileError);
    system.before = [&](std::string_view operation, const std::string&) {
        if (operation == "read") system.write("/a", std::string(100, 'x')); // grows behind the size check
    };
    try {
        readFile(system, "/a", 50);
        FAIL();
    } catch (const FileError& error) {
        EXPECT_EQ(error.code(), EFBIG);
    }
    // Generated files have the size 0 and contents.
    EXPECT_THAT(readFile(FileSystem::real(), "/proc/self/status", 100'000), HasSubstr("Name:"));
}

} // namespace

} // namespace lumisort::files
