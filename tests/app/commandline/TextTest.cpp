#include "app/commandline/Text.h"

#include <gmock/gmock.h>

namespace lumisort::app {

TEST(Printable, KeepsNamesReadableAndHarmless) {
    using namespace std::string_view_literals;
    const struct {
        std::string_view path, shown;
    } cases[] = {
        {"/p/Müller 冬 🎞.jpg", "/p/Müller 冬 🎞.jpg"},
        {"/p/a\nb\tc\x1b[2J", "/p/a\\x0ab\\x09c\\x1b[2J"},
        {"/p/\xff\xfe.jpg", "/p/\\xff\\xfe.jpg"},
        {"/p/\xe5\x86", "/p/\\xe5\\x86"}, // cut in the middle of a character
        {"/p/\u0085\u202Egpj.exe",
         "/p/\\xc2\\x85\\xe2\\x80\\xaegpj.exe"}, // a line end, a text that runs backwards
        {"/p/\x7f"sv, "/p/\\x7f"},
        {"", ""},
    };
    for (const auto& [path, shown] : cases) EXPECT_EQ(printable(path), shown);
}

TEST(Counted, SpeaksPlainly) {
    EXPECT_EQ(counted(0, "photo"), "0 photos");
    EXPECT_EQ(counted(1, "photo"), "1 photo");
    EXPECT_EQ(counted(999, "photo"), "999 photos");
    EXPECT_EQ(counted(1000, "photo"), "1,000 photos");
    EXPECT_EQ(counted(1234567, "photo"), "1,234,567 photos");
}

} // namespace lumisort::app
