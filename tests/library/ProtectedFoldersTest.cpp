#include "library/ProtectedFolders.h"

#include "library/DocumentBeside.h"
#include "support/EveryFault.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumisort::library {
namespace {

using files::FileUrl;
using testing::HasSubstr;

const auto location = FileUrl::fromPath("/data/Lumisort/protected-folders.json");
using Document = DocumentBeside<ProtectedFolders>;

FileUrl url(std::string_view path) {
    return FileUrl::fromPath(path);
}

TEST(ProtectedFolders, ProtectWhatLiesInsideWhateverTheirPathsLookLike) {
    ProtectedFolders folders;
    for (const auto* path : {"/p/family", "/p/family/", "/p/./x/../family", "/latin\xE9/"})
        folders.add(url(path));
    EXPECT_EQ(folders.folders(), (std::vector{url("/p/family/"), url("/latin\xE9/")}));
    const struct {
        std::string path;
        bool isProtected;
    } photos[] = {{"/p/family/a.jpg", true},   {"/p/family/2024/b.jpg", true}, {"/p//family/c.jpg", true},
                  {"/p/familyx/a.jpg", false}, {"/p/Family/a.jpg", false},     {"/p/family", false},
                  {"/latin\xE9/a.jpg", true}};
    for (const auto& [path, isProtected] : photos)
        EXPECT_EQ(folders.isProtected(url(path)), isProtected) << path;
    EXPECT_EQ(folders.protecting(url("/p/family/2024/")), url("/p/family/"));
    EXPECT_EQ(folders.protecting(url("/p/family")), url("/p/family/"));
    EXPECT_EQ(folders.protecting(url("/p/")), std::nullopt);
    folders.remove(url("/p/family/2024"));
    EXPECT_TRUE(folders.isProtected(url("/p/family/2024/b.jpg")));
    folders.remove(url("/p/family"));
    EXPECT_FALSE(folders.isProtected(url("/p/family/a.jpg")));
    folders.add(url("/"));
    EXPECT_TRUE(folders.isProtected(url("/p/familyx/a.jpg")));
}

TEST(ProtectedFolders, AreOnDiskOrAsTheyWereThroughEveryFault) {
    ProtectedFolders one, two;
    one.add(url("/latin\xE9/"));
    two = one;
    two.add(url("/b/"));
    test::throughEveryFault(
        [&](test::MemoryFileSystem& system) {
            Document(system, location).change([&](ProtectedFolders& folders) { folders = one; });
            system.write("/data/Lumisort/library.json", "{}");
        },
        [&](test::MemoryFileSystem& system) {
            Document(system, location).change([](ProtectedFolders& folders) { folders.add(url("/b/")); });
        },
        [&](test::MemoryFileSystem& system, bool done) {
            Document document(system, location);
            const auto held = document.read();
            EXPECT_TRUE(held == two || (!done && held == one));
            EXPECT_EQ(system.filesBelow("/data/Lumisort"),
                      (std::vector<std::string>{"/data/Lumisort/library.json", location.path()}));
        });
}

TEST(ProtectedFolders, LeaveADocumentAloneThatCannotBeRead) {
    const struct {
        std::string text, reason;
    } cases[] = {{"", "the file is empty"},
                 {R"({"folders":[]})", "version that is not known"},
                 {R"({"folders":{"of":"another"},"version":2})", "version that is not known"},
                 {R"({"folders":["/no-url"],"version":1})", "folders[0]"},
                 {R"({"version":1})", "folders: is missing"}};
    for (const auto& [text, reason] : cases) {
        test::MemoryFileSystem system;
        system.write(location.path(), text);
        Document document(system, location);
        try {
            document.change([](ProtectedFolders& folders) { folders.add(url("/a/")); });
            ADD_FAILURE() << text;
        } catch (const files::FileError& error) {
            EXPECT_THAT(error.what(), HasSubstr(reason));
            EXPECT_THAT(error.what(), HasSubstr(location.path()));
        }
        EXPECT_EQ(system.contents(location.path()), text);
        system.write(location.path(), R"({"by":"hand","folders":["file:///a"],"version":1})");
        EXPECT_EQ(document.read().folders(), std::vector{url("/a/")}); // mended meanwhile
    }
}

} // namespace
} // namespace lumisort::library
