#include "similarity/ExactCopies.h"

#include "platform/files/Digest.h"
#include "platform/tasks/Cancellation.h"
#include "support/FatVolume.h"
#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <map>
#include <string>

namespace lumisort::similarity {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Groups = std::vector<std::vector<std::string>>;

struct ExactCopiesTest : testing::Test {
    test::MemoryFileSystem system;
    std::vector<library::Photo> photos;
    ReadObserver observer;
    std::stop_source stop;
    std::size_t failed = 0;

    void add(const std::string& path, std::string_view contents) {
        system.write(path, contents);
        list(path);
    }
    void list(const std::string& path) { photos.push_back({.url = files::FileUrl::fromPath(path)}); }

    Groups duplicates() {
        const auto copies = findExactCopies(system, photos, observer, stop.get_token());
        failed = copies.failed;
        Groups paths;
        for (const auto& group : copies.groups) {
            paths.emplace_back();
            for (const auto& photo : group) paths.back().push_back(photo.url.path());
        }
        return paths;
    }
};

TEST_F(ExactCopiesTest, GroupsFilesOfTheSameBytes) {
    add("/p/z.jpg", "twin 1");
    add("/p/b.jpg", "copies");
    add("/p/empty2", "");
    add("/p/a.jpg", "copies");
    add("/p/other", "differ");
    add("/p/c.jpg", "copies");
    add("/p/y.jpg", "twin 1");
    add("/p/alone", "a size of its own");
    add("/p/empty1", "");
    std::vector<std::string> opened;
    system.before = [&](std::string_view operation, const std::string& path) {
        if (operation == "open") opened.push_back(path);
    };
    const Groups expected{
        {"/p/a.jpg", "/p/b.jpg", "/p/c.jpg"}, {"/p/empty1", "/p/empty2"}, {"/p/y.jpg", "/p/z.jpg"}};
    EXPECT_EQ(duplicates(), expected);
    EXPECT_EQ(failed, 0U);
    EXPECT_EQ(opened.size(), 8U);
    EXPECT_THAT(opened, testing::Not(testing::Contains("/p/alone")));

    std::ranges::reverse(photos);
    EXPECT_EQ(duplicates(), expected);
    photos.clear();
    EXPECT_THAT(duplicates(), IsEmpty());
}

TEST_F(ExactCopiesTest, WhatCannotBeCheckedFailsAndTheRestIsFound) {
    add("/p/a", "copies");
    add("/p/b", "copies");
    add("/p/unreadable", "copies");
    system.failReads("/p/unreadable", EIO);
    system.makeLink("/p/link", "/p/a");
    list("/p/link");
    system.makeFolder("/p/folder");
    list("/p/folder");
    list("/p/missing");
    EXPECT_THAT(duplicates(), ElementsAre(ElementsAre("/p/a", "/p/b")));
    EXPECT_EQ(failed, 4U);
}

/// A change to /p/b at any operation of the run makes it fail, and no group holds it or what it was a copy
/// of.
TEST_F(ExactCopiesTest, AFileThatChangesAtAnyMomentIsInNoGroup) {
    const auto touch = [&](const std::string& contents) { system.write("/p/b", contents); };
    for (const std::string later : {"copies", "copied", "copies and more", "cop", ""})
        for (std::size_t moment = 1;; ++moment) {
            photos.clear();
            add("/p/a", "copies");
            add("/p/b", "copies");
            std::size_t operations = 0;
            bool stamped = false;
            system.before = [&](std::string_view, const std::string& path) {
                if (stamped && ++operations == moment) touch(later);
                stamped = stamped || path == "/p/b"; // from then on a change must be noticed
            };
            const auto groups = duplicates();
            system.before = {};
            if (operations < moment) {
                EXPECT_THAT(groups, ElementsAre(ElementsAre("/p/a", "/p/b")));
                EXPECT_GT(moment, 10U);
                break;
            }
            EXPECT_THAT(groups, IsEmpty()) << later << " at operation " << moment;
            EXPECT_EQ(failed, 1U);
        }
}

/// On FAT and FUSE a file may have another inode number at every look.
TEST_F(ExactCopiesTest, FindsCopiesWhereInodesAreInvented) {
    add("/p/a", "copies");
    add("/p/b", "copies");
    add("/p/c", "copies");
    system.setKeepsInodes(false);
    EXPECT_THAT(duplicates(), ElementsAre(ElementsAre("/p/a", "/p/b", "/p/c")));
    EXPECT_EQ(failed, 0U);
    system.before = [&](std::string_view operation, const std::string& path) {
        if (operation == "read" && path == "/p/b") system.write(path, "copies"); // but a touch is a change
    };
    EXPECT_THAT(duplicates(), ElementsAre(ElementsAre("/p/a", "/p/c")));
    EXPECT_EQ(failed, 1U);
}

TEST_F(ExactCopiesTest, FindsCopiesOnARealVolumeWhoseFilesLeaveTheCacheMeanwhile) {
    const test::FatVolume volume(8);
    LUMISORT_NEEDS_FAT(volume);
    for (const auto* name : {"a.jpg", "b.jpg", "c.jpg"}) {
        list(volume.path() + '/' + name);
        std::ofstream(photos.back().url.path()) << "copies";
    }
    bool dropped = false;
    observer = [&](const files::FileUrl&, std::int64_t) {
        if (std::exchange(dropped, true)) return;
        sync();
        std::ofstream("/proc/sys/vm/drop_caches") << 2; // inodes and names
    };
    const auto copies = findExactCopies(files::FileSystem::real(), photos, observer);
    EXPECT_EQ(copies.failed, 0U);
    ASSERT_EQ(copies.groups.size(), 1U);
    EXPECT_EQ(copies.groups.front().size(), 3U);
}

TEST_F(ExactCopiesTest, ReadsNoFileFurtherThanToWhereItDiffersFromAllOthers) {
    constexpr std::int64_t page = 4096, piece = files::digestChunkBytes;
    const std::string whole(3 * piece, 'x');
    const auto differing = [&](std::int64_t at, char with) {
        auto contents = whole;
        contents[static_cast<std::size_t>(at)] = with;
        return contents;
    };
    add("/p/a", whole);
    add("/p/b", whole);
    add("/p/first", differing(0, 'y'));
    add("/p/second", differing(page, 'y'));
    add("/p/third 1", differing(page + piece, 'y'));
    add("/p/third 2", differing(page + piece, 'y'));
    add("/p/last 1", differing(3 * piece - 1, 'y'));
    add("/p/last 2", differing(3 * piece - 1, 'z'));
    std::map<std::string, std::vector<std::int64_t>> pieces;
    observer = [&](const files::FileUrl& url, std::int64_t bytes) { pieces[url.path()].push_back(bytes); };
    EXPECT_THAT(duplicates(),
                ElementsAre(ElementsAre("/p/a", "/p/b"), ElementsAre("/p/third 1", "/p/third 2")));
    EXPECT_EQ(failed, 0U);
    const std::vector<std::int64_t> all{page, page + piece, page + 2 * piece, 3 * piece};
    const auto start = [&](std::ptrdiff_t steps) {
        return std::vector<std::int64_t>(all.begin(), all.begin() + steps);
    };
    EXPECT_EQ(pieces, (std::map<std::string, std::vector<std::int64_t>>{{"/p/a", all},
                                                                        {"/p/b", all},
                                                                        {"/p/first", start(1)},
                                                                        {"/p/second", start(2)},
                                                                        {"/p/third 1", all},
                                                                        {"/p/third 2", all},
                                                                        {"/p/last 1", all},
                                                                        {"/p/last 2", all}}));

    observer = [](const files::FileUrl& url, std::int64_t) {
        if (url.path() == "/p/a") throw files::FileError("read", url.path(), EIO);
    };
    photos.resize(2);
    EXPECT_THAT(duplicates(), IsEmpty());
    EXPECT_EQ(failed, 1U);
}

/// More files of one size than may be open at once, equal in pairs up to the last byte.
TEST_F(ExactCopiesTest, ReadsManyFilesOfOneSizeWithFewOpen) {
    constexpr int pairs = 150;
    std::size_t openings = 0;
    for (int i = 0; i < 2 * pairs; ++i) {
        std::string contents(10'000, 'x');
        contents[5000] = static_cast<char>('a' + i / 2 % 25);
        contents[9999] = static_cast<char>('a' + i / 50);
        add("/p/" + std::to_string(1000 + i), contents);
    }
    system.before = [&](std::string_view operation, const std::string&) { openings += operation == "open"; };
    EXPECT_EQ(duplicates().size(), pairs);
    EXPECT_EQ(failed, 0U);
    EXPECT_LE(openings, 2U * 2 * pairs);
}

TEST_F(ExactCopiesTest, ARunThatIsStoppedYieldsNothing) {
    list("/p/missing");
    add("/p/a", "copies");
    add("/p/b", "copies");
    observer = [](const files::FileUrl&, std::int64_t) { throw tasks::Cancelled(); };
    EXPECT_THROW(duplicates(), tasks::Cancelled);
    observer = {};
    for (int moment : {2, 4, 8, 14}) { // operations of each of the three passes
        stop = std::stop_source();
        system.before = [&](std::string_view, const std::string&) {
            if (--moment == 0) stop.request_stop();
        };
        EXPECT_THROW(duplicates(), tasks::Cancelled);
        EXPECT_TRUE(stop.stop_requested());
    }
}

} // namespace
} // namespace lumisort::similarity
