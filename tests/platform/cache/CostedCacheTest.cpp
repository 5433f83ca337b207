#include "platform/cache/CostedCache.h"

#include <gmock/gmock.h>

#include <map>
#include <random>
#include <string>

namespace lumisort::cache {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(CostedCache, RemovesWhatWasUsedLongestAgoAndReturnsIt) {
    CostedCache<std::string, std::string> cache(10);
    EXPECT_THAT(cache.insert("a", "A", 4), IsEmpty());
    EXPECT_THAT(cache.insert("b", "B", 4), IsEmpty());
    ASSERT_NE(cache.find("a"), nullptr); // used: b is the older one now
    EXPECT_THAT(cache.insert("c", "C", 6), ElementsAre("B"));
    EXPECT_EQ(cache.cost(), 10U);
    EXPECT_THAT(cache.insert("c", "C2", 1), ElementsAre("C"));
    EXPECT_THAT(cache.insert("huge", "H", 11), ElementsAre("H"));
    EXPECT_EQ(*cache.find("c"), "C2");
    EXPECT_EQ(cache.erase("a"), "A");
    EXPECT_EQ(cache.erase("a"), std::nullopt);
    EXPECT_EQ(cache.cost(), 1U);
    cache.clear();
    EXPECT_EQ(cache.cost(), 0U);
    EXPECT_EQ(cache.find("c"), nullptr);
}

TEST(CostedCache, CostsWhatItsValuesCost) {
    constexpr std::size_t budget = 100;
    CostedCache<int, std::size_t> cache(budget); // the value is its cost
    std::mt19937 random(1);
    for (int step = 0; step < 5000; ++step) {
        const int key = static_cast<int>(random() % 20);
        const std::size_t cost = random() % 60;
        if (random() % 4 == 0)
            cache.erase(key);
        else
            cache.insert(key, cost, cost);
        std::size_t sum = 0;
        for (int each = 0; each < 20; ++each)
            if (const auto* value = cache.find(each)) sum += *value;
        ASSERT_EQ(cache.cost(), sum);
        ASSERT_LE(sum, budget);
    }
}

} // namespace
} // namespace lumisort::cache
