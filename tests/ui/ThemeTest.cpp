#include "support/quick/QuickStage.h"

#include <gtest/gtest.h>

namespace lumisort::ui {
namespace {

TEST(Theme, NamesStayOnOneLineAndInTheirPlace) {
    test::QuickStage stage;
    auto& window = stage.show(R"(import QtQuick
                                 import Lumisort.Ui
                                 Window {
                                     property string name
                                     property string line: Theme.line(name)
                                     property string caption: Theme.leading(line) + " · 1 of 2"
                                 })");
    struct Case {
        const char* name;
        const char* line;
        const char* caption;
    };
    for (const auto& [name, line, caption] : {
             Case{"a ü 写真.jpg", "a ü 写真.jpg", "a ü 写真.jpg · 1 of 2"},
             Case{"two\nlines\u2028\u0085\t", "two\uFFFDlines\uFFFD\uFFFD\uFFFD",
                  "two\uFFFDlines\uFFFD\uFFFD\uFFFD · 1 of 2"},
             Case{"\u202Egpj.exe\u2066\u2069", "\uFFFDgpj.exe\uFFFD\uFFFD",
                  "\uFFFDgpj.exe\uFFFD\uFFFD · 1 of 2"},
             Case{"תמונה.jpg", "תמונה.jpg", "\u2068תמונה.jpg\u2069 · 1 of 2"},
             Case{"صورة 1.jpg", "صورة 1.jpg", "\u2068صورة 1.jpg\u2069 · 1 of 2"},
         }) {
        SCOPED_TRACE(name);
        window.setProperty("name", QString::fromUtf8(name));
        EXPECT_EQ(window.property("line").toString(), QString::fromUtf8(line));
        EXPECT_EQ(window.property("caption").toString(), QString::fromUtf8(caption));
    }
}

} // namespace
} // namespace lumisort::ui
