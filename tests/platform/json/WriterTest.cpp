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

TEST(JsonWriter, KeepsAnyTextAndReplacesWhatIsNone) {
    const std::pair<std::string, std::string> cases[] = {
        {std::string("\"\\\n\0\x07", 5), std::string("\"\\\n\0\x07", 5)},
        {"grün 写真 \U0001F4F7", "grün 写真 \U0001F4F7"},
        {"gr\xFCn \xF0\x9F\x93", "gr\uFFFDn \uFFFD\uFFFD\uFFFD"},
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
    std::vector<double> numbers{-0.0, 5e-324, std::numeric_limits<double>::max(), 1e23, 785964645.123456789};
    std::mt19937_64 random(7);
    while (numbers.size() < 100'000) {
        const auto number = std::bit_cast<double>(random());
        if (std::isfinite(number))
            numbers.push_back(number);
        else
            EXPECT_THROW(toText([&](Writer& out) { out.number(number); }), std::invalid_argument);
    }
    const auto written = toText([&](Writer& out) {
        out.beginArray();
        for (const double value : numbers) out.number(value);
        out.endArray();
    });
    auto next = numbers.begin();
    parse(written, [&](Value root) {
        eachElement(root, [&](Value value) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(number(value)), std::bit_cast<std::uint64_t>(*next++));
        });
    });
    EXPECT_EQ(next, numbers.end());
}

} // namespace
} // namespace lumisort::json
