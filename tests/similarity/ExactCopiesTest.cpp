#include "similarity/ExactCopies.h"

#include "platform/files/Digest.h"
#include "platform/tasks/Cancellation.h"
#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
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

TEST_F(ExactCopiesTest, ReportsEveryPieceOfEveryFileRead) {
    const std::string large(files::digestChunkBytes + 5, 'x');
    add("/p/a", large);
    add("/p/b", large);
    std::vector<std::pair<std::string, std::int64_t>> pieces;
    observer = [&](const files::FileUrl& url, std::int64_t bytes) { pieces.emplace_back(url.path(), bytes); };
    EXPECT_EQ(duplicates().size(), 1U);
    EXPECT_THAT(pieces, ElementsAre(testing::Pair("/p/a", 1'048'576), testing::Pair("/p/a", 1'048'581),
                                    testing::Pair("/p/b", 1'048'576), testing::Pair("/p/b", 1'048'581)));

    observer = [](const files::FileUrl& url, std::int64_t) {
        if (url.path() == "/p/a") throw std::runtime_error("no more");
    };
    EXPECT_THAT(duplicates(), IsEmpty());
    EXPECT_EQ(failed, 1U);
}

TEST_F(ExactCopiesTest, AStopEndsTheRun) {
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
