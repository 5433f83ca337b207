#include "library/SessionDocument.h"

#include "library/SessionStore.h"
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

LibrarySession ours(const char* folder = "/ours") {
    return {.folders = {FileUrl::fromPath(folder)}};
}

TEST(SessionDocument, KeepsWhatAnotherProgramPutThere) {
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
        SessionDocument open(system, document, noClock());
        if (present)
            open.load();
        else
            EXPECT_THROW(open.load(), files::FileError);
        meanwhile(system);
        EXPECT_EQ(open.save(ours("/first")), kept ? std::optional(FileUrl::fromPath(aside)) : std::nullopt);
        EXPECT_EQ(system.contents(aside), kept);
        EXPECT_EQ(open.save(ours()), std::nullopt) << "its own document";
        EXPECT_EQ(SessionStore::load(system, document), ours());

        system.write(document.path(), theirs + ' ');
        const auto second = kept ? aside + "-2" : aside;
        EXPECT_EQ(open.save(ours()), FileUrl::fromPath(second));
        EXPECT_EQ(system.contents(second), theirs + ' ');
    }
}

TEST(SessionDocument, FollowsALinkToTheDocument) {
    MemoryFileSystem system;
    system.write("/synced/library.json", theirs);
    system.makeLink(document.path(), "/synced/library.json");
    SessionDocument open(system, document, noClock());
    open.load();
    EXPECT_EQ(open.save(ours()), std::nullopt);
    system.write("/synced/library.json", theirs);
    EXPECT_EQ(open.save(ours()), FileUrl::fromPath(aside));
    EXPECT_EQ(system.contents(aside), theirs);
    EXPECT_EQ(system.contents("/synced/library.json"), system.contents(document.path()));
    EXPECT_EQ(SessionStore::load(system, document), ours());
}

TEST(SessionDocument, LosesNoDocumentAndKeepsEachOnceWhateverFails) {
    std::unique_ptr<SessionDocument> open;
    test::throughEveryFault(
        [&](MemoryFileSystem& system) {
            SessionStore::save(system, ours("/before"), document);
            open = std::make_unique<SessionDocument>(system, document, noClock());
            open->load();
            system.write(document.path(), theirs);
        },
        [&](MemoryFileSystem& system) { EXPECT_TRUE(open->save(ours())) << system.contents(aside).value(); },
        [&](MemoryFileSystem& system, bool done) {
            const auto left = system.contents(document.path());
            EXPECT_TRUE(left == theirs || system.contents(aside) == theirs);
            EXPECT_TRUE(left == theirs || SessionStore::load(system, document) == ours());
            EXPECT_TRUE(!done || system.filesBelow("/data").size() == 2);
        });
}

TEST(SessionDocument, TellsOfAKeptDocumentWhenTheWriteThatFailedIsDone) {
    MemoryFileSystem system;
    system.write(document.path(), theirs);
    SessionDocument open(system, document, noClock());
    std::size_t replaced = 0;
    system.before = [&](std::string_view operation, const std::string&) {
        if (operation == "replace" && ++replaced == 2) throw files::FileError("write", document.path(), EIO);
    };
    EXPECT_THROW(open.save(ours()), files::FileError);
    EXPECT_EQ(open.save(ours()), FileUrl::fromPath(aside));
    EXPECT_THAT(system.filesBelow("/data"), ElementsAre(document.path(), aside));
}

TEST(SessionDocument, PutsAnUnreadableOneAside) {
    MemoryFileSystem system;
    system.write(document.path(), "{");
    SessionDocument open(system, document, noClock());
    EXPECT_THROW(open.load(), files::FileError);
    EXPECT_EQ(open.save(ours()), std::nullopt);
    EXPECT_EQ(open.save(ours()), std::nullopt);
    EXPECT_THAT(system.filesBelow("/data"),
                ElementsAre(document.path(), "/data/library.json.unreadable-20010101T000000Z"));
}

} // namespace
} // namespace lumisort::library
