#include "library/LibraryFile.h"

#include "library/LibraryStorage.h"
#include "support/EveryFault.h"

#include <gmock/gmock.h>

namespace lumisort::library {
namespace {

using files::FileUrl;
using test::MemoryFileSystem;
using testing::ElementsAre;

const auto document = FileUrl::fromPath("/data/library.json");
const std::string aside = "/data/library.json.changed-20010101T000000Z";
const std::string theirs = R"({"photos":[],"folders":["file:///theirs"]})";

time::Clock noClock() {
    return {.now = [] { return time::Timestamp(0); }, .uptimeSeconds = [] { return 0.0; }};
}

LibraryContents ours(const char* folder = "/ours") {
    return {.folders = {FileUrl::fromPath(folder)}};
}

KeptDocuments keptAs(const std::string& copy) {
    return {.unreadable = {}, .changed = FileUrl::fromPath(copy)};
}

TEST(LibraryFile, KeepsWhatAnotherProgramPutThere) {
    const std::string before = R"({"photos":[],"folders":[]})";
    struct Case {
        const char* name;
        bool present; ///< when it was opened
        std::function<void(MemoryFileSystem&)> meanwhile;
        std::optional<std::string> kept;
    };
    const Case cases[] = {
        {"nothing", true, [](auto&) {}, std::nullopt},
        {"rewritten", true, [](auto& system) { system.write(document.path(), theirs); }, theirs},
        {"rewritten, as long", true,
         [](auto& system) { system.write(document.path(), R"({"folders":[],"photos":[]})"); },
         R"({"folders":[],"photos":[]})"},
        {"replaced", true,
         [](auto& system) {
             system.write("/data/new", theirs);
             system.replace("/data/new", document.path());
         },
         theirs},
        {"removed", true, [](auto& system) { system.remove(document.path()); }, std::nullopt},
        {"still none", false, [](auto&) {}, std::nullopt},
        {"appeared", false, [](auto& system) { system.write(document.path(), theirs); }, theirs},
        {"appeared, unreadable", false, [](auto& system) { system.write(document.path(), "{"); }, "{"},
    };
    for (const auto& [name, present, meanwhile, kept] : cases) {
        SCOPED_TRACE(name);
        MemoryFileSystem system;
        if (present) system.write(document.path(), before);
        LibraryFile open(system, document, noClock());
        if (present)
            open.load();
        else
            EXPECT_THROW(open.load(), files::FileError);
        meanwhile(system);
        EXPECT_EQ(open.save(ours("/first")), kept ? keptAs(aside) : KeptDocuments{});
        EXPECT_EQ(system.contents(aside), kept);
        EXPECT_EQ(open.save(ours()), KeptDocuments{}) << "its own document";
        EXPECT_EQ(readLibrary(system, document), ours());

        system.write(document.path(), theirs + ' ');
        const auto second = kept ? aside + "-2" : aside;
        EXPECT_EQ(open.save(ours()), keptAs(second));
        EXPECT_EQ(system.contents(second), theirs + ' ');
    }
}

/// Unplugged and plugged in again, touched, copied back and forth: no other text, so nothing to keep.
TEST(LibraryFile, KeepsNothingWhereOnlyTheFilesIdentityChanged) {
    MemoryFileSystem system;
    system.write(document.path(), theirs);
    for (const bool keepsInodes : {true, false}) {
        SCOPED_TRACE(keepsInodes);
        system.setKeepsInodes(keepsInodes);
        LibraryFile open(system, document, noClock());
        open.load();
        EXPECT_EQ(open.save(ours("/first")), KeptDocuments{});
        EXPECT_EQ(open.save(ours()), KeptDocuments{});
        system.write(document.path(), system.contents(document.path()).value());
        EXPECT_EQ(open.save(ours("/first")), KeptDocuments{}) << "of its own save";

        LibraryFile again(system, document, noClock());
        again.load();
        system.write(document.path(), system.contents(document.path()).value());
        EXPECT_EQ(again.save(ours()), KeptDocuments{}) << "of what it loaded";
    }
    EXPECT_THAT(system.filesBelow("/data"), ElementsAre(document.path()));
}

TEST(LibraryFile, FollowsALinkToTheDocument) {
    MemoryFileSystem system;
    system.write("/synced/library.json", theirs);
    system.makeLink(document.path(), "/synced/library.json");
    LibraryFile open(system, document, noClock());
    open.load();
    EXPECT_EQ(open.save(ours()), KeptDocuments{});
    system.write("/synced/library.json", theirs);
    EXPECT_EQ(open.save(ours()), keptAs(aside));
    EXPECT_EQ(system.contents(aside), theirs);
    EXPECT_EQ(system.contents("/synced/library.json"), system.contents(document.path()));
    EXPECT_EQ(readLibrary(system, document), ours());
}

TEST(LibraryFile, LosesNoDocumentAndKeepsEachOnceWhateverFails) {
    std::unique_ptr<LibraryFile> open;
    test::throughEveryFault(
        [&](MemoryFileSystem& system) {
            writeLibrary(system, ours("/before"), document);
            open = std::make_unique<LibraryFile>(system, document, noClock());
            open->load();
            system.write(document.path(), theirs);
        },
        [&](MemoryFileSystem& system) {
            EXPECT_TRUE(open->save(ours()).changed) << system.contents(aside).value();
        },
        [&](MemoryFileSystem& system, bool done) {
            const auto left = system.contents(document.path());
            EXPECT_TRUE(left == theirs || system.contents(aside) == theirs);
            EXPECT_TRUE(left == theirs || readLibrary(system, document) == ours());
            EXPECT_TRUE(!done || system.filesBelow("/data").size() == 2);
        });
}

TEST(LibraryFile, TellsOfAKeptDocumentWhenTheWriteThatFailedIsDone) {
    MemoryFileSystem system;
    system.write(document.path(), theirs);
    LibraryFile open(system, document, noClock());
    std::size_t replaced = 0;
    system.before = [&](std::string_view operation, const std::string&) {
        if (operation == "replace" && ++replaced == 1) throw files::FileError("write", document.path(), EIO);
    };
    EXPECT_THROW(open.save(ours()), files::FileError);
    EXPECT_EQ(open.save(ours()), keptAs(aside));
    EXPECT_THAT(system.filesBelow("/data"), ElementsAre(document.path(), aside));
}

TEST(LibraryFile, PutsAnUnreadableOneAside) {
    MemoryFileSystem system;
    system.write(document.path(), "{");
    LibraryFile open(system, document, noClock());
    EXPECT_THROW(open.load(), files::FileError);
    const std::string kept = "/data/library.json.unreadable-20010101T000000Z";
    bool full =
        true; // the document is renamed and then the first write fails: the next save returns the name
    system.before = [&](std::string_view operation, const std::string&) {
        if (full && operation == "write") throw files::FileError("write", document.path(), ENOSPC);
    };
    EXPECT_THROW(open.save(ours()), files::FileError);
    full = false;
    EXPECT_EQ(open.save(ours()), KeptDocuments{.unreadable = FileUrl::fromPath(kept)});
    EXPECT_EQ(open.save(ours()), KeptDocuments{});
    EXPECT_THAT(system.filesBelow("/data"), ElementsAre(document.path(), kept));
}

} // namespace
} // namespace lumisort::library
