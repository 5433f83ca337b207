#include "platform/files/FileError.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace lumisort::files {

namespace {

TEST(FileError, IsOneLineOfValidTextForAnyPath) {
    struct Case {
        const char *path, *message;
    };
    for (const auto& [path, message] : {
             Case{"/photos/a.jpg", "Could not open “/photos/a.jpg”: Permission denied"},
             Case{"/ä €/𝔸", "Could not open “/ä €/𝔸”: Permission denied"},
             Case{"/a\nb\x7f", "Could not open “/a\\x0Ab\\x7F”: Permission denied"},
             Case{"/\xff\xc3.jpg", "Could not open “/\\xFF\\xC3.jpg”: Permission denied"},
             Case{"/\xed\xa0\x80", "Could not open “/\\xED\\xA0\\x80”: Permission denied"},
         }) {
        const FileError error("open", path, EACCES);
        EXPECT_STREQ(error.what(), message);
        EXPECT_EQ(error.path(), path);
        EXPECT_EQ(error.description(), "Could not open the file: Permission denied");
    }
}

TEST(FileError, KnowsWhatIsMissing) {
    EXPECT_TRUE(FileError("open", "/a", ENOENT).isMissing());
    EXPECT_TRUE(FileError("open", "/a", ENOTDIR).isMissing());
    EXPECT_FALSE(FileError("open", "/a", EACCES).isMissing());
    const FileError reason("copy", "/a", "It changed while it was copied");
    EXPECT_STREQ(reason.what(), "Could not copy “/a”: It changed while it was copied");
    EXPECT_EQ(reason.code(), 0);
    EXPECT_EQ(FileError("create the folder", "/a", EROFS).description(),
              "Could not create the folder: Read-only file system");
}

} // namespace

} // namespace lumisort::files
