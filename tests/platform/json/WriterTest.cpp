#include "platform/json/Writer.h"

#include "platform/json/Reader.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace lumisort::json {
namespace {

TEST(JsonWriter, WritesCompactly) {
    const auto written = toText([](Writer& out) {
        out.beginObject();
        out.key("n").integer(std::numeric_limits<std::int64_t>::min());
        out.key("list").beginArray();
        out.number(-0.5);
        out.timestamp(time::Timestamp(1e-7));
        out.url(files::FileUrl::fromPath("/a b/\xFF.jpg"));
        out.endArray();
        out.key("none").beginObject();
        out.endObject();
        out.endObject();
    });
    EXPECT_EQ(written, R"({"n":-9223372036854775808,"list":[-0.5,1e-7,"file:///a%20b/%FF.jpg"],"none":{}})");
}

TEST(JsonWriter, KeepsAnyTextAndReplacesWhatIsNone) {
    const struct {
        std::string given, read;
    } cases[] = {
        {std::string("quote\" back\\ line\n nul\0 bell\x07", 26),
         std::string("quote\" back\\ line\n nul\0 bell\x07", 26)},
        {"grün 写真 \U0001F4F7", "grün 写真 \U0001F4F7"},
        {"gr\xFCn", "gr\uFFFDn"},
        {"cut \xF0\x9F\x93", "cut \uFFFD\uFFFD\uFFFD"},
        {"surrogate \xED\xA0\x80", "surrogate \uFFFD\uFFFD\uFFFD"},
    };
    for (const auto& [given, expected] : cases) {
        std::string read;
        parse(toText([&](Writer& out) {
                  out.beginArray();
                  out.text(given);
                  out.endArray();
              }),
              [&](Value root) { eachElement(root, [&](Value value) { read = text(value); }); });
        EXPECT_EQ(read, expected);
    }
}

TEST(JsonWriter, NumbersReadBackExactly) {
    std::vector<double> numbers{0.0,
                                -0.0,
                                0.1,
                                5e-324,
                                std::numeric_limits<double>::max(),
                                1e23,
                                9007199254740993.0,
                                785964645.123456789,
                                -978307200.0};
    std::mt19937_64 random(7);
    while (numbers.size() < 100'000) {
        const auto number = std::bit_cast<double>(random());
        if (std::isfinite(number)) numbers.push_back(number);
    }
    const auto written = toText([&](Writer& out) {
        out.beginArray();
        for (const double value : numbers) out.number(value);
        out.endArray();
    });
    std::size_t index = 0;
    parse(written, [&](Value root) {
        eachElement(root, [&](Value value) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(number(value)),
                      std::bit_cast<std::uint64_t>(numbers[index]))
                << numbers[index];
            ++index;
        });
    });
    EXPECT_EQ(index, numbers.size());
}

TEST(JsonWriter, RefusesNumbersThatJsonHasNot) {
    for (const double value : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_THROW(toText([&](Writer& out) { out.number(value); }), std::invalid_argument);
    }
}

TEST(JsonWriter, HandsOnPiecesOfBoundedSize) {
    std::string whole;
    std::size_t longest = 0;
    Writer out([&](std::string_view piece) {
        whole += piece;
        longest = std::max(longest, piece.size());
    });
    out.beginArray();
    for (int i = 0; i < 200'000; ++i) out.integer(i);
    out.endArray();
    out.finish();
    EXPECT_LT(longest, 300'000U);
    int next = 0;
    parse(whole,
          [&](Value root) { eachElement(root, [&](Value value) { ASSERT_EQ(integer(value), next++); }); });
    EXPECT_EQ(next, 200'000);
}

} // namespace
} // namespace lumisort::json
