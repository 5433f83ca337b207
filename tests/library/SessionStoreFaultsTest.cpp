#include "library/SessionStore.h"
#include "support/EveryFault.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumisort::library {
namespace {

using test::MemoryFileSystem;
using test::throughEveryFault;

const auto document = files::FileUrl::fromPath("/home/data/Lumisort/library.json");
const std::string broken = "{\"photos\":[";

LibrarySession sessionOf(const char* folder, int photos) {
    LibrarySession session;
    session.folders = {files::FileUrl::fromPath(folder)};
    for (int i = 0; i < photos; ++i)
        session.photos.push_back({session.folders[0].child(std::to_string(i)), i, i, i, std::nullopt});
    return session;
}

std::optional<LibrarySession> loaded(MemoryFileSystem& system) {
    if (!system.contents(document.path())) return std::nullopt;
    return SessionStore::load(system, document);
}

TEST(SessionStoreFaults, TheOldDocumentOrTheNewOneIsThere) {
    const auto before = sessionOf("/old", 3);
    const auto after = sessionOf("/new", 9000); // several pieces
    throughEveryFault([&](MemoryFileSystem& system) { SessionStore::save(system, before, document); },
                      [&](MemoryFileSystem& system) { SessionStore::save(system, after, document); },
                      [&](MemoryFileSystem& system, bool done) {
                          const auto left = loaded(system);
                          ASSERT_TRUE(left);
                          EXPECT_TRUE(*left == after || (!done && *left == before));
                      });
}

TEST(SessionStoreFaults, TheFirstDocumentIsWholeOrAbsent) {
    const auto first = sessionOf("/new", 10);
    throughEveryFault([](MemoryFileSystem& system) { system.makeFolder("/home"); },
                      [&](MemoryFileSystem& system) { SessionStore::save(system, first, document); },
                      [&](MemoryFileSystem& system, bool done) {
                          const auto left = loaded(system);
                          EXPECT_TRUE(left ? *left == first : !done);
                      });
}

TEST(SessionStoreFaults, AnUnreadableDocumentIsNeverLost) {
    const auto after = sessionOf("/new", 10);
    const time::Timestamp now(817'159'500);
    throughEveryFault([](MemoryFileSystem& system) { system.write(document.path(), broken); },
                      [&](MemoryFileSystem& system) {
                          SessionStore::setAsideUnreadable(system, document, now);
                          SessionStore::save(system, after, document);
                      },
                      [&](MemoryFileSystem& system, bool done) {
                          std::vector<std::string> kept;
                          for (const auto& path : system.filesBelow("/home/data/Lumisort")) {
                              if (system.contents(path) == broken) kept.push_back(path);
                          }
                          ASSERT_EQ(kept.size(), 1U);
                          if (kept[0] != document.path()) {
                              EXPECT_THAT(kept[0], testing::StartsWith(document.path() + ".unreadable-"));
                              const auto left = loaded(system);
                              EXPECT_TRUE(left ? *left == after : !done);
                          }
                      });
}

TEST(SessionStoreFaults, AFullDiskKeepsTheOldDocument) {
    const auto before = sessionOf("/old", 3);
    MemoryFileSystem system;
    SessionStore::save(system, before, document);
    system.setFreeBytes(1000);
    try {
        SessionStore::save(system, sessionOf("/new", 9000), document);
        FAIL();
    } catch (const files::FileError& error) {
        EXPECT_EQ(error.what(), "Could not write “" + document.path() + "”: No space left on device");
    }
    EXPECT_EQ(loaded(system), before);
    EXPECT_EQ(system.filesBelow("/"), std::vector{document.path()});
}

} // namespace
} // namespace lumisort::library
