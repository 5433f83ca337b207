#include "library/LibraryStorage.h"

#include "library/KeptDocuments.h"
#include "library/LibraryLocation.h"
#include "support/EveryFault.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <random>

namespace lumisort::library {
namespace {

using files::FileUrl;
using test::MemoryFileSystem;
using time::Timestamp;

const auto document = FileUrl::fromPath("/home/data/Lumisort/library.json");

LibraryContents sample(int photos = 1) {
    LibraryContents session;
    session.photos = {{FileUrl::fromPath("/a b/ü.jpg"), 12, 4000, 3000, Timestamp(646'000'000.123456)},
                      {FileUrl::fromPath("/line\n\"\\%41.nef"), std::numeric_limits<std::int64_t>::max(), 0,
                       0, std::nullopt}};
    session.photos.resize(session.photos.size() + static_cast<std::size_t>(photos),
                          {FileUrl::fromPath("/\xFF"), 0, 1, 2, Timestamp(-0.5)});
    session.folders = {FileUrl::fromPath("/a b/"), FileUrl::fromPath("/no slash")};
    session.reviewMarks = {{"/a b/ü.jpg", {ReviewDecision::keep, {12, Timestamp(1.1), Timestamp(0.1)}}},
                           {"/\xFF", {ReviewDecision::cleanup, {-1, std::nullopt, std::nullopt}}}};
    return session;
}

std::optional<LibraryContents> loaded(MemoryFileSystem& system) {
    if (!system.contents(document.path())) return std::nullopt;
    return readLibrary(system, document);
}

TEST(LibraryStorage, WritesThisText) {
    LibraryContents session;
    session.photos = {{FileUrl::fromPath("/p/1 ü.jpg"), 5, 4, 3, Timestamp(0.25)},
                      {FileUrl::fromPath("/p/2.jpg"), 6, 0, 0, std::nullopt}};
    session.folders = {FileUrl::fromPath("/p/")};
    session.reviewMarks = {{"/\xFF", {ReviewDecision::cleanup, {7, Timestamp(1), std::nullopt}}}};
    MemoryFileSystem system;
    writeLibrary(system, session, document);
    EXPECT_EQ(
        system.contents(document.path()),
        R"({"photos":[{"url":"file:///p/1%20%C3%BC.jpg","bytes":5,"width":4,"height":3,"date":0.25},)"
        R"({"url":"file:///p/2.jpg","bytes":6,"width":0,"height":0}],"folders":["file:///p/"],)"
        R"("reviewMarks":{"file:///%FF":{"decision":"For Cleanup","stamp":{"modified":1.0,"size":7}}}})");
}

TEST(LibraryStorage, ReadsWhatOtherVersionsMayWrite) {
    MemoryFileSystem system;
    system.write(document.path(), R"({
        "version": [1, {"x": null}], "folders": ["file://localhost/p"],
        "reviewMarks": {"/p/a": {"stamp": {"size": 1}, "decision": "Keep"},
                        "/p/a": {"stamp": {"created": null, "size": 2}, "decision": "For Cleanup", "by": "me"}},
        "photos": [{"date": null, "height": -3, "width": 2, "bytes": 1, "url": "file:///p/a", "tags": []}]
    } )");
    LibraryContents expected{
        {{FileUrl::fromPath("/p/a"), 1, 2, -3, std::nullopt}}, {FileUrl::fromPath("/p")}, {}};
    expected.reviewMarks = {{"/p/a", {ReviewDecision::cleanup, {2, std::nullopt, std::nullopt}}}};
    EXPECT_EQ(loaded(system), expected);
    system.write(document.path(), R"({"photos":[],"folders":[]})");
    EXPECT_EQ(loaded(system), LibraryContents{});
}

TEST(LibraryStorage, SaysWhatIsWrongWithADocument) {
    const std::pair<std::string, std::string> cases[] = {
        {R"({"folders":[]})", "photos: is missing"},
        {R"({"photos":[{"url":"file:///a","width":1,"height":1}],"folders":[]})",
         "photos[0].bytes: is missing"},
        {R"({"photos":[],"folders":[],"reviewMarks":{"/a.jpg":{"decision":"keep","stamp":{"size":1}}}})",
         "reviewMarks[\"/a.jpg\"].decision: “keep” is no decision"},
        {R"({"photos":[],"folders":[],"reviewMarks":{"/a":{"decision":"Keep","stamp":{}}}})",
         "reviewMarks[\"/a\"].stamp.size: is missing"},
    };
    MemoryFileSystem system;
    for (const auto& [text, message] : cases) {
        system.write(document.path(), text);
        try {
            readLibrary(system, document);
            ADD_FAILURE() << text;
        } catch (const files::FileError& error) {
            EXPECT_EQ(error.what(), "Could not read “" + document.path() + "”: " + message);
            EXPECT_FALSE(error.isMissing());
        }
        EXPECT_EQ(system.contents(document.path()), text);
    }
}

TEST(LibraryStorage, DamageIsAFailureOrAnotherLibrary) {
    MemoryFileSystem system;
    writeLibrary(system, sample(), document);
    const auto whole = *system.contents(document.path());
    std::mt19937 random(11);
    int failures = 0;
    for (int run = 0; run < 3000; ++run) {
        auto text = whole;
        for (auto count = 1 + random() % 4; count > 0; --count)
            text[random() % text.size()] = "\"{}[],:\\0e-n\xFF"[random() % 14];
        if (run % 3 == 0) text.resize(random() % text.size());
        system.write(document.path(), text);
        try {
            readLibrary(system, document); // the sanitizers watch
        } catch (const files::FileError&) {
            ++failures;
        }
    }
    EXPECT_GT(failures, 2000);
}

TEST(LibraryStorage, TheOldDocumentOrTheNewOneIsThere) {
    const auto before = sample(), after = sample(6000); // several pieces
    test::throughEveryFault([&](MemoryFileSystem& system) { writeLibrary(system, before, document); },
                            [&](MemoryFileSystem& system) { writeLibrary(system, after, document); },
                            [&](MemoryFileSystem& system, bool done) {
                                const auto left = loaded(system);
                                EXPECT_TRUE(left == after || (!done && left == before));
                            });
}

TEST(LibraryStorage, AnUnreadableDocumentIsNeverLost) {
    const std::string broken = "{\"photos\":[", aside = document.path() + ".unreadable-20261123T204500Z";
    test::throughEveryFault(
        [&](MemoryFileSystem& system) {
            system.write(document.path(), broken);
            system.write(aside, "an earlier one");
        },
        [&](MemoryFileSystem& system) {
            setAsideUnreadable(system, document, Timestamp(817'159'500));
            writeLibrary(system, sample(), document);
        },
        [&](MemoryFileSystem& system, bool done) {
            EXPECT_EQ(system.contents(aside), "an earlier one");
            if (!done && system.contents(document.path()) == broken) return;
            EXPECT_EQ(system.contents(aside + "-2"), broken);
            const auto left = loaded(system);
            EXPECT_TRUE(left ? *left == sample() : !done);
        });
    MemoryFileSystem empty;
    EXPECT_EQ(setAsideUnreadable(empty, document, Timestamp(0)), std::nullopt);
}

TEST(LibraryLocation, IsWhereTheEnvironmentSays) {
    const char* const names[] = {"LUMISORT_TEST_SESSION", "XDG_DATA_HOME", "HOME"};
    const std::pair<std::array<const char*, 3>, std::string> cases[] = {
        {{"/t/any name", "/d", "/h"}, "/t/any name"},
        {{nullptr, "/d", "/h"}, "/d/Lumisort/library.json"},
        {{"", "relative", "/h"}, "/h/.local/share/Lumisort/library.json"},
    };
    const auto set = [&](int i, const char* value) {
        value ? setenv(names[i], value, 1) : unsetenv(names[i]);
    };
    for (const auto& [values, expected] : cases) {
        for (int i = 0; i < 3; ++i) set(i, values[static_cast<std::size_t>(i)]);
        EXPECT_EQ(libraryLocation().path(), expected);
    }
    set(0, nullptr);
}

} // namespace
} // namespace lumisort::library
