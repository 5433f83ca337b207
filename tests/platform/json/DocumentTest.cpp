#include "platform/json/Document.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumisort::json {
namespace {

TEST(JsonDocument, NamesTheFile) {
    const test::TemporaryFolder folder;
    const auto file = folder.write("a.json", R"({"b c":"x"})");
    auto& system = files::FileSystem::real();
    try {
        readDocument(system, file.path(), [](Value root) {
            eachField(root, [](std::string_view, Value field) { integer(field); });
        });
        FAIL();
    } catch (const files::FileError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr(file.path()));
        EXPECT_THAT(error.what(), testing::HasSubstr(R"(["b c"]: a whole number is expected)"));
        EXPECT_EQ(error.code(), 0);
    }
    EXPECT_THROW(readDocument(system, file.path() + "x", [](Value) {}), files::FileError);
}

} // namespace
} // namespace lumisort::json
