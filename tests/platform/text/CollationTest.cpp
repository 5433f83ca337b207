#include "platform/text/Collation.h"

#include "platform/text/KeySort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace lumisort::text {

namespace {

const std::string composed = "/fotos/\u00c4pfel\u0302.jpg";    // Ä as one code point; l with a circumflex
const std::string decomposed = "/fotos/A\u0308pfel\u0302.jpg"; // A and a diaeresis

int sign(int value) {
    return (value > 0) - (value < 0);
}

TEST(NaturalOrder, ListsAsAFileBrowserDoes) {
    const std::vector<std::string> ordered = {
        "",
        "1.jpg",
        "2.jpg",
        "10.jpg",
        "a.jpg",
        "A.jpg",
        "\u00e4.jpg",
        "\u00c4.jpg",
        "b.jpg",
        "img_01.jpg",
        "img_1.jpg",
        "IMG_2.jpg",
        "img_2a.jpg",
        "IMG_10.jpg",
        "img_10b.jpg",
        "IMG_99999999999999999999999.jpg",
        "z\u00e4 10.jpg",
        "\xc3",
        "\xff",
    };
    const NaturalOrder order;
    for (std::size_t i = 0; i < ordered.size(); ++i)
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            const int expected = (i > j) - (i < j);
            EXPECT_EQ(sign(order.compare(ordered[i], ordered[j])), expected)
                << ordered[i] << " and " << ordered[j];
            EXPECT_EQ(sign(order.sortKey(ordered[i]).compare(order.sortKey(ordered[j]))), expected)
                << "keys of " << ordered[i] << " and " << ordered[j];
        }
}

TEST(Orders, FastWaysAgreeWithPlainOnesOnAnyBytes) {
    std::mt19937 random(7);
    static constexpr std::string_view alphabet[] = {"a",    "A",    "\u00e4",     "0", "1", "9",
                                                    "/",    " ",    "_",          "-", ".", "\u0308",
                                                    "\xff", "\xc3", "\U0001f4f7", "\n"};
    const auto word = [&] {
        std::string text;
        for (auto length = random() % 8; length > 0; --length)
            text += alphabet[random() % std::size(alphabet)];
        return text;
    };
    const NaturalOrder order;
    for (int i = 0; i < 20'000; ++i) {
        const auto start = word(), a = start + word(), b = start + word();
        ASSERT_EQ(canonicalLess(a, b), canonicalForm(a) < canonicalForm(b)) << a << " | " << b;
        ASSERT_EQ(sign(order.compare(a, b)), sign(order.sortKey(a).compare(order.sortKey(b))))
            << a << " | " << b;
        ASSERT_EQ(order.compare(a, b) == 0, a == b);
    }
}

TEST(NaturalPermutation, IsTheStableOrderOfTheComparison) {
    std::mt19937 random(11);
    std::vector<std::string> paths;
    for (int i = 0; i < 3000; ++i)
        paths.push_back("/Photos/" + std::to_string(random() % 3) + (random() % 2 ? "/IMG_" : "/img_") +
                        std::to_string(random() % 500) + (random() % 5 ? ".jpg" : "\xff"));
    const std::vector<std::string_view> names(paths.begin(), paths.end());
    std::vector<std::size_t> expected(names.size());
    for (std::size_t i = 0; i < expected.size(); ++i) expected[i] = i;
    const NaturalOrder order;
    std::ranges::stable_sort(expected, [&](auto a, auto b) { return order.compare(names[a], names[b]) < 0; });
    EXPECT_EQ(naturalPermutation(names), expected);
    EXPECT_TRUE(naturalPermutation({}).empty());
}

TEST(SortedPermutation, IsTheStableOrderOfAnyBytes) {
    std::mt19937 random(13);
    for (const std::size_t count : {0, 1, 2, 16, 17, 1000}) {
        std::vector<std::string> keys;
        for (std::size_t i = 0; i < count; ++i) { // long common beginnings, zero bytes, many equal ones
            std::string key(random() % 3 * 8, 'p');
            for (auto length = random() % 20; length > 0; --length) key += "\0\1\xff"[random() % 3];
            keys.push_back(random() % 4 ? key : std::string(random() % 30, '\0'));
        }
        std::vector<std::size_t> expected(count);
        for (std::size_t i = 0; i < count; ++i) expected[i] = i;
        std::ranges::stable_sort(expected, {}, [&](auto i) -> const std::string& { return keys[i]; });
        EXPECT_EQ(sortedPermutation(keys), expected);
    }
    // Equal keys of any length end: a document may name one file a thousand times.
    const std::vector<std::string> equal(1000, std::string(10'000, 'x'));
    EXPECT_TRUE(std::ranges::is_sorted(sortedPermutation(equal)));
}

TEST(CanonicalOrder, ComparesComposedCodePoints) {
    EXPECT_EQ(canonicalForm(decomposed), composed);
    EXPECT_EQ(canonicalForm(composed), composed);
    EXPECT_FALSE(canonicalLess(composed, decomposed));
    EXPECT_FALSE(canonicalLess(decomposed, composed));

    const std::string broken = decomposed + '\xff';
    EXPECT_EQ(canonicalPermutation({"/b", decomposed, composed, "/a"}),
              (std::vector<std::size_t>{3, 0, 1, 2}));
    EXPECT_EQ(canonicalForm(broken), broken) << "what is no UTF-8 stays as it is";

    // Upper before lower case, no numbers, code points beyond the first plane last (not so in UTF-16).
    const std::vector<std::string> ordered = {"/B",      "/IMG_10",  "/IMG_2",  "/a",          decomposed,
                                              "/\u00e9", "/e\u0302", "/\uff21", "/\U0001f4f7", "/\xff"};
    for (std::size_t i = 0; i < ordered.size(); ++i)
        for (std::size_t j = 0; j < ordered.size(); ++j)
            EXPECT_EQ(canonicalLess(ordered[i], ordered[j]), i < j) << ordered[i] << " and " << ordered[j];
}

TEST(Text, Utf8AndLowerCase) {
    for (const auto* good : {"", "plain ascii text", "\u00e4\u20ac\U0001f4f7", "\U0010ffff"})
        EXPECT_TRUE(isUtf8(good)) << good;
    for (const auto* bad : {"\x80", "\xc3", "abcdefgh\xff", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80",
                            "\xe2\x82", "\xe2\x82z"})
        EXPECT_FALSE(isUtf8(bad)) << bad;

    EXPECT_EQ(lowerCase("IMG_0001.JPG \u00c4\u00d6\u0416\u0391"), "img_0001.jpg \u00e4\u00f6\u0436\u03b1");
    EXPECT_EQ(lowerCase("I\u0130"), "ii"); // by no locale's rule, one code point for one
    EXPECT_EQ(lowerCase("A\xff\xc3Z"), "a\xff\xc3z");
}

} // namespace

} // namespace lumisort::text
