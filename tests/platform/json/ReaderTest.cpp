#include "platform/json/Reader.h"

#include <gtest/gtest.h>

namespace lumisort::json {
namespace {

/// The sum of the counts in {"list":[{"count":…}…]}.
std::int64_t sumOf(const std::string& text) {
    std::optional<std::int64_t> sum;
    parse(text, [&](Value root) {
        eachField(root, [&](std::string_view listKey, Value list) {
            if (listKey != "list") return;
            sum = 0;
            eachElement(list, [&](Value element) {
                std::optional<std::int64_t> count;
                eachField(element, [&](std::string_view key, Value field) {
                    if (key == "count") count = integer(field);
                    if (key == "at" && !isNull(field)) timestamp(field);
                });
                *sum += required(std::move(count), "count");
            });
        });
    });
    return required(std::move(sum), "list");
}

std::string failureOf(const std::string& text) {
    try {
        sumOf(text);
        return "none";
    } catch (const FormatError& error) {
        return error.what();
    }
}

TEST(JsonReader, TakesKeysInAnyOrderAndPassesOverUnknownOnes) {
    const std::pair<std::string, std::int64_t> cases[] = {
        {R"( { "x" : [{"list":1}], "list" : [ {"at":1.5,"count":-2} , {"count":5} ] } )", 3},
        {R"({"l\u0069st":[{"more":{"deep":[[],{"a":null}]},"at":null,"count":1,"count":2}]})", 2},
        {R"({"list":[{"count":1}],"list":[]})", 0},
        {R"({"deep":)" + std::string(5000, '[') + std::string(5000, ']') + R"(,"list":[{"count":1}]})", 1},
    };
    for (const auto& [text, sum] : cases) EXPECT_EQ(sumOf(text), sum) << text;
}

TEST(JsonReader, SaysWhereAndWhatIsWrong) {
    const std::pair<std::string, std::string> cases[] = {
        {" ", "the file is empty"},
        {"7", "no well-formed JSON"},
        {"[1]", "an object is expected"},
        {"{}", "list: is missing"},
        {R"({"list":[{"count":1},{}]})", "list[1].count: is missing"},
        {R"({"list":[{"count":1.5}]})", "list[0].count: a whole number is expected"},
        {R"({"list":[{"count":9223372036854775808}]})", "list[0].count: a whole number is expected"},
        {R"({"list":[{"at":1e999}]})", "list[0].at: a number is expected"},
        {R"({"list":[{"at":NaN}]})", "list[0].at: a number is expected"},
        {R"({"list":[]}{})", "something follows the end"},
        {"{\"list\":[],\"x\":\"\xFF\"}", "the text is no UTF-8"},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(failureOf(text), message) << text;
}

TEST(JsonReader, NoticesEveryCutAndSurvivesEveryByte) {
    const std::string whole = R"({"list":[{"count":12,"at":1.5e3}],"x":{"a":[1,"b\"\u00e9"]}})";
    ASSERT_EQ(sumOf(whole), 12);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        EXPECT_NE(failureOf(whole.substr(0, at)), "none") << at;
        for (int byte = 0; byte < 256; ++byte) {
            auto text = whole;
            text[at] = static_cast<char>(byte);
            failureOf(text);
        }
    }
}

} // namespace
} // namespace lumisort::json
