#include "organize/OrganizeReport.h"
#include "platform/json/FormatError.h"

#include <gtest/gtest.h>

namespace lumisort::organize {

namespace {

TEST(Report, KeepsPathsByteForByteAndLinesAsText) {
    const OrganizeItem item{.source = files::FileUrl::fromPath("/p/\xff \"q\"\n%.jpg"),
                            .destination = files::FileUrl::fromPath("/d/\xff.jpg"),
                            .digest = std::string(64, 'a'),
                            .bytes = 1LL << 40};
    OrganizeReport report{
        .copied = {item}, .duplicates = 7, .failures = {"/p/a\nb.jpg: “x”", "/p/\xff"}, .logURL = {}};
    const std::string text = toJson(report);
    EXPECT_NE(text.find(R"("source":"file:///p/%FF%20%22q%22%0A%25.jpg")"), std::string::npos);
    report.failures[1] = "/p/\uFFFD";
    EXPECT_EQ(reportFromJson(text), report);
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_THROW(reportFromJson(text.substr(0, length)), json::FormatError) << length;
}

} // namespace

} // namespace lumisort::organize
