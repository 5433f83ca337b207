#include "platform/json/Reader.h"

#include <gtest/gtest.h>

#include <map>

namespace lumisort::json {
namespace {

struct Record {
    std::int64_t count = 0;
    std::optional<time::Timestamp> at;
    friend bool operator==(const Record&, const Record&) = default;
};

Record readRecord(Value value) {
    std::optional<std::int64_t> count;
    Record record;
    eachField(value, [&](std::string_view key, Value field) {
        if (key == "count") count = integer(field);
        if (key == "at" && !isNull(field)) record.at = timestamp(field);
    });
    record.count = required(std::move(count), "count");
    return record;
}

/// {"list": [Record…]}
std::vector<Record> readRecords(const std::string& text) {
    std::optional<std::vector<Record>> records;
    parse(text, [&](Value root) {
        eachField(root, [&](std::string_view key, Value field) {
            if (key != "list") return;
            records.emplace();
            eachElement(field, [&](Value element) { records->push_back(readRecord(element)); });
        });
    });
    return required(std::move(records), "list");
}

std::string failureOf(const std::string& text) {
    try {
        readRecords(text);
        return "none";
    } catch (const FormatError& error) {
        return error.what();
    }
}

TEST(JsonReader, TakesKeysInAnyOrderAndPassesOverUnknownOnes) {
    using Records = std::vector<Record>;
    const struct {
        std::string text;
        Records expected;
    } cases[] = {
        {R"({"list":[]})", {}},
        {R"( { "x" : [{"list":1}], "list" : [ {"at":1.5,"count":-2} , {"count":3} ] } )",
         {{-2, time::Timestamp(1.5)}, {3, std::nullopt}}},
        {R"({"list":[{"count":1,"more":{"deep":[[],{"a":null}]},"at":null}]})", {{1, std::nullopt}}},
        {R"({"l\u0069st":[{"count":1,"count":2}]})", {{2, std::nullopt}}},
        {R"({"list":[{"count":1}],"list":[]})", {}},
        {R"({"list":[{"at":7,"count":9223372036854775807}]})", {{9223372036854775807, time::Timestamp(7)}}},
        {R"({"deep":)" + std::string(5000, '[') + std::string(5000, ']') + R"(,"list":[]})", {}},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(readRecords(text), expected) << text;
}

TEST(JsonReader, SaysWhereAndWhatIsWrong) {
    const std::map<std::string, std::string> cases{
        {"", "the file is empty"},
        {"  ", "the file is empty"},
        {"7", "no well-formed JSON"},
        {"[1]", "an object is expected"},
        {"{}", "list: is missing"},
        {R"({"list":{}})", "list: an array is expected"},
        {R"({"list":[{"count":1},{}]})", "list[1].count: is missing"},
        {R"({"list":[{"count":1.5}]})", "list[0].count: a whole number is expected"},
        {R"({"list":[{"count":"1"}]})", "list[0].count: a whole number is expected"},
        {R"({"list":[{"count":null}]})", "list[0].count: a whole number is expected"},
        {R"({"list":[{"count":9223372036854775808}]})", "list[0].count: a whole number is expected"},
        {R"({"list":[{"at":1e999}]})", "list[0].at: a number is expected"},
        {R"({"list":[{"at":NaN}]})", "list[0].at: a number is expected"},
        {R"({"list":[{"at":true}]})", "list[0].at: a number is expected"},
        {R"({"list":[]} x)", "something follows the end"},
        {R"({"list":[]}{})", "something follows the end"},
        {"{\"list\":[],\"x\":\"\xFF\"}", "the text is no UTF-8"},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(failureOf(text), message) << text;
}

TEST(JsonReader, EveryTruncationIsNoticed) {
    const std::string whole =
        R"({"list":[{"count":12,"at":1.5e3},{"at":null,"count":0}],"x":{"a":[1,"b\""]}})";
    ASSERT_EQ(readRecords(whole).size(), 2U);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_NE(failureOf(whole.substr(0, length)), "none") << length;
}

TEST(JsonReader, SurvivesAnyReplacedByte) {
    const std::string whole = R"({"list":[{"count":12,"at":1.5e3},{"at":null}],"x":{"a":[1,"b\"\u00e9"]}})";
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            auto text = whole;
            text[at] = static_cast<char>(byte);
            failureOf(text);
        }
    }
}

} // namespace
} // namespace lumisort::json
