#include "platform/files/FileUrl.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace lumisort::files {

namespace {

TEST(FileUrl, KeepsPathsByteForByteThroughTheUrlForm) {
    struct Case {
        std::string path, url;
    };
    for (const auto& [path, url] : {
             Case{"/", "file:///"},
             Case{"/photos/a.jpg", "file:///photos/a.jpg"},
             Case{"/with space/50%/what?/#1;[x]", "file:///with%20space/50%25/what%3F/%231%3B%5Bx%5D"},
             Case{"/ä", "file:///%C3%A4"},
             Case{"/no\xff\xfeutf8", "file:///no%FF%FEutf8"},
             Case{"/new\nline\"'\\", "file:///new%0Aline%22'%5C"},
             Case{"/-._~!$&'()*+,=:@", "file:///-._~!$&'()*+,=:@"},
             Case{"/a/../b//c/.", "file:///a/../b//c/."},
             Case{"/folder/", "file:///folder/"},
         }) {
        const auto made = FileUrl::fromPath(path);
        EXPECT_EQ(made.string(), url);
        EXPECT_EQ(FileUrl::fromString(url), made) << url;
        EXPECT_EQ(made.endsInSlash(), path.size() > 1 && path.ends_with('/'));
    }
    std::string everyByte = "/";
    for (int byte = 1; byte < 256; ++byte) everyByte += static_cast<char>(byte);
    EXPECT_EQ(FileUrl::fromString(FileUrl::fromPath(everyByte).string())->path(), everyByte);
}

TEST(FileUrl, ReadsOtherSpellings) {
    EXPECT_EQ(FileUrl::fromString("file://localhost/a")->path(), "/a");
    EXPECT_EQ(FileUrl::fromString("file:///%61%2e%4A%4a")->path(), "/a.JJ");
    EXPECT_EQ(FileUrl::fromString("file:///a///"), FileUrl::fromPath("/a/"));
    EXPECT_EQ(FileUrl::fromString("file:///ä b")->path(), "/ä b"); // written by hand
}

TEST(FileUrl, RefusesWhatNamesNoFile) {
    for (const auto* url :
         {"", "/a", "a", "http://a/b", "file:", "file://", "file://host/a", "file://localhostile/a", "file:a",
          "file:///a%", "file:///a%4", "file:///a%zz", "file:///a%00b", "file:///a?b", "file:///a#b"})
        EXPECT_FALSE(FileUrl::fromString(url)) << url;
    EXPECT_THROW(FileUrl::fromPath(""), std::invalid_argument);
    EXPECT_THROW(FileUrl::fromPath(std::string_view("/a\0b", 4)), std::invalid_argument);
}

TEST(FileUrl, TakesNamesApart) {
    struct Case {
        const char *path, *name, *stem, *extension, *parent;
    };
    for (const auto& [path, name, stem, extension, parent] : {
             Case{"/p/a.JPG", "a.JPG", "a", "JPG", "file:///p/"},
             Case{"/a.tar.gz", "a.tar.gz", "a.tar", "gz", "file:///"},
             Case{"/p/.hidden", ".hidden", ".hidden", "", "file:///p/"},
             Case{"/p/.hidden.jpg", ".hidden.jpg", ".hidden", "jpg", "file:///p/"},
             Case{"/p/dot.", "dot.", "dot.", "", "file:///p/"},
             Case{"/p.d/none", "none", "none", "", "file:///p.d/"},
             Case{"/p/Mr. Smith", "Mr. Smith", "Mr. Smith", "", "file:///p/"},
             Case{"/p/Fotos.photoslibrary/", "Fotos.photoslibrary", "Fotos", "photoslibrary", "file:///p/"},
             Case{"/p/..", "..", "..", "", "file:///p/"},
             Case{"/", "", "", "", "file:///"},
         }) {
        const auto url = FileUrl::fromPath(path);
        EXPECT_EQ(url.name(), name);
        EXPECT_EQ(url.stem(), stem) << path;
        EXPECT_EQ(url.extension(), extension) << path;
        EXPECT_EQ(url.parent().string(), parent) << path;
    }
    EXPECT_EQ(FileUrl::fromPath("/p/").child("a b").path(), "/p/a b");
    EXPECT_EQ(FileUrl::fromPath("/").child("2024/05/").string(), "file:///2024/05/");
    EXPECT_NE(FileUrl::fromPath("/p/"), FileUrl::fromPath("/p"));
    EXPECT_EQ(FileUrl::fromPath("relative").path(), std::filesystem::current_path().string() + "/relative");
}

} // namespace

} // namespace lumisort::files
