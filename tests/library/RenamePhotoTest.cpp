#include "library/RenamePhoto.h"

#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace lumisort::library {

using files::FileUrl;
using testing::ElementsAre;

namespace {

class RenamePhoto : public testing::Test {
protected:
    RenamePhoto() { system_.write(photo_.url.path(), "pixels"); }

    std::string messageOf(std::string_view stem) {
        try {
            renamePhoto(system_, photo_, stem);
        } catch (const RenameError& error) {
            return error.what();
        }
        return "";
    }

    test::MemoryFileSystem system_;
    Photo photo_{.url = FileUrl::fromPath("/p/IMG_1.JPG"), .bytes = 6, .width = 3, .height = 2, .date = {}};
};

} // namespace

TEST_F(RenamePhoto, KeepsFolderExtensionAndEverythingElse) {
    auto expected = photo_;
    expected.url = FileUrl::fromPath("/p/holiday at sea.JPG");
    EXPECT_EQ(renamePhoto(system_, photo_, " \n\u00A0holiday at sea\t"), expected);
    EXPECT_THAT(system_.filesBelow("/p"), ElementsAre("/p/holiday at sea.JPG"));

    system_.write("/p/scan", "x");
    EXPECT_EQ(renamePhoto(system_, {.url = FileUrl::fromPath("/p/scan")}, "plain").url.path(), "/p/plain");
}

TEST_F(RenamePhoto, RefusesBeforeItTouchesAnything) {
    system_.write("/p/taken.JPG", "other");
    int effects = 0;
    system_.before = [&](std::string_view operation, auto&&) {
        effects += operation != "moveWithoutOverwrite";
    };
    for (const std::string_view stem :
         {"", "  ", ".", "..", ".hidden", "a/b", "a:b", "a\nb", "a\x7F", "a\u0085b", "\xFF\xFE"})
        EXPECT_EQ(messageOf(stem), "Enter a valid filename without / or :.") << stem;
    EXPECT_EQ(messageOf("taken"), "A file with this name already exists.");
    EXPECT_EQ(renamePhoto(system_, photo_, " IMG_1 "), photo_);
    EXPECT_EQ(effects, 0);
    EXPECT_THAT(system_.filesBelow("/p"), ElementsAre("/p/IMG_1.JPG", "/p/taken.JPG"));
    EXPECT_EQ(system_.contents("/p/taken.JPG"), "other");
}

TEST_F(RenamePhoto, PassesOnWhatTheFileSystemSays) {
    system_.failAt(0, EROFS);
    EXPECT_THROW(renamePhoto(system_, photo_, "new"), files::FileError);
    EXPECT_THAT(system_.filesBelow("/p"), ElementsAre("/p/IMG_1.JPG"));
}

} // namespace lumisort::library
