#include "similarity/visual/AnchorGrouping.h"

#include "platform/tasks/Cancellation.h"
#include "similarity/visual/AnchorMetricIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>

namespace lumisort::similarity {
namespace {

using AnyDistance = std::function<float(int, int)>;

using testing::ElementsAre;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// Points of a small lattice under the Manhattan metric: exact in floats and full of ties.
struct Lattice {
    std::vector<std::array<int, 3>> points;

    Lattice(int count, unsigned seed, int side) {
        std::mt19937 random(seed);
        for (int i = 0; i < count; ++i)
            points.push_back({static_cast<int>(random() % side), static_cast<int>(random() % side),
                              static_cast<int>(random() % side)});
    }
    float operator()(int i, int j) const {
        float sum = 0;
        for (std::size_t axis = 0; axis < 3; ++axis)
            sum += static_cast<float>(std::abs(points[static_cast<std::size_t>(i)][axis] -
                                               points[static_cast<std::size_t>(j)][axis]));
        return sum;
    }
};

std::optional<Neighbour> nearestByTrying(int query, const std::vector<int>& items, float radius,
                                         const AnyDistance& distance) {
    std::optional<Neighbour> best;
    for (const int item : items) {
        const Neighbour found{.item = item, .distance = distance(query, item)};
        if (found.distance <= radius && (!best || found.beats(*best))) best = found;
    }
    return best;
}

std::vector<AnchorMatch> matchesByTrying(int count, float radius, const AnyDistance& distance) {
    std::vector<int> anchors;
    std::vector<AnchorMatch> matches;
    for (int item = 0; item < count; ++item) {
        const auto best = nearestByTrying(item, anchors, radius, distance);
        matches.push_back(best ? AnchorMatch{.anchor = best->item, .distance = best->distance}
                               : AnchorMatch{.anchor = item, .distance = 0});
        if (!best) anchors.push_back(item);
    }
    return matches;
}

std::vector<AnchorMatch> group(int count, float radius, const AnyDistance& distance, int width = 4) {
    return AnchorGrouping::matches(count, radius, width, distance, [](int) {}, {});
}

TEST(MetricIndex, PartsItemsAtTheMedianAndPutsChildrenBeforeTheirParent) {
    const auto onALine = [](int i, int j) { return static_cast<float>(std::abs(i - j)); };
    const MetricIndex index({1, 3, 6, 10, 0}, onALine, {});
    const auto& nodes = index.nodes();
    ASSERT_EQ(nodes.size(), 5U);
    // From 0 the others lie at 1, 3, 6 and 10: the median, 6, goes outside.
    EXPECT_EQ(nodes.back().item, 0);
    EXPECT_EQ(nodes.back().split, 6);
    ASSERT_TRUE(nodes.back().inner && nodes.back().outer);
    const auto& inner = nodes[*nodes.back().inner];
    EXPECT_EQ(inner.item, 3);
    EXPECT_FALSE(inner.inner);
    EXPECT_EQ(nodes[inner.outer.value()].item, 1);
    EXPECT_EQ(nodes[*nodes.back().outer].item, 10);
    EXPECT_EQ(nodes.front().split, 0);
    EXPECT_FALSE(MetricIndex({}, onALine, {}).nearest(0, 100, onALine, {}));
}

TEST(MetricIndex, FindsWhatTryingAllItemsFinds) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        const Lattice lattice(300, seed, 12);
        std::vector<int> items(250);
        std::iota(items.begin(), items.end(), 50);
        std::ranges::shuffle(items, std::mt19937(seed));
        const MetricIndex index(items, lattice, {});
        for (int query = 0; query < 300; ++query)
            for (const float radius : {0.0F, 2.0F, 5.0F, 100.0F})
                EXPECT_EQ(index.nearest(query, radius, lattice, {}),
                          nearestByTrying(query, items, radius, lattice));
    }
}

TEST(AnchorMetricIndex, GrowsAsABinaryCounter) {
    const Lattice lattice(40, 4, 20);
    AnchorMetricIndex index;
    std::vector<int> items;
    for (int item = 0; item < 40; ++item) {
        index.insert(item, lattice, {});
        items.push_back(item);
        for (std::size_t k = 0; k < index.blocks().size(); ++k) {
            const auto& block = index.blocks()[k];
            EXPECT_EQ(block.has_value(), (items.size() >> k & 1U) != 0);
            if (block) {
                EXPECT_EQ(block->items.size(), std::size_t{1} << k);
            }
        }
        for (int query = 0; query < 40; query += 7)
            EXPECT_EQ(index.nearest(query, 9, lattice, {}), nearestByTrying(query, items, 9, lattice));
    }
    EXPECT_EQ(index.blocks()[3]->items.back(), 39); // the newest item is the vantage item of its tree
}

TEST(AnchorMetricIndex, AnInsertionThatFailsChangesNothing) {
    const Lattice lattice(4, 5, 9);
    AnchorMetricIndex index;
    for (const int item : {0, 1, 2}) index.insert(item, lattice, {});
    const AnyDistance failing = [](int, int) -> float { throw std::runtime_error("no distance"); };
    EXPECT_THROW(index.insert(3, failing, {}), std::runtime_error);
    EXPECT_EQ(index.blocks().size(), 2U);
    EXPECT_EQ(index.nearest(3, 100, lattice, {}), nearestByTrying(3, {0, 1, 2}, 100, lattice));
}

TEST(AnchorGrouping, SmallCases) {
    const auto constant = [](float value) { return [value](int, int) { return value; }; };
    const AnyDistance triangle = [](int i, int j) { return i + j == 1 ? 0.2F : 0.25F; };
    // Item 2 is as far from both anchors, 0 and 1.
    const AnyDistance tie = [](int i, int j) { return i + j == 1 ? 0.5F : 0.3F; };
    EXPECT_THAT(group(0, 1, constant(0)), ElementsAre());
    EXPECT_THAT(group(-1, 1, constant(0)), ElementsAre());
    EXPECT_THAT(group(1, 1, constant(0)), ElementsAre(AnchorMatch{0, 0}));
    EXPECT_THAT(group(3, 0, constant(0.1F)),
                ElementsAre(AnchorMatch{0, 0}, AnchorMatch{1, 0}, AnchorMatch{2, 0}));
    EXPECT_THAT(group(3, 0.3F, constant(0)),
                ElementsAre(AnchorMatch{0, 0}, AnchorMatch{0, 0}, AnchorMatch{0, 0}));
    EXPECT_THAT(group(3, 0.3F, triangle),
                ElementsAre(AnchorMatch{0, 0}, AnchorMatch{0, 0.2F}, AnchorMatch{0, 0.25F}));
    EXPECT_THAT(group(3, 0.3F, tie), ElementsAre(AnchorMatch{0, 0}, AnchorMatch{1, 0}, AnchorMatch{0, 0.3F}));
    EXPECT_THAT(group(2, 0.3F, constant(0.3F)), ElementsAre(AnchorMatch{0, 0}, AnchorMatch{0, 0.3F}));
    EXPECT_THAT(group(2, 0.3F, constant(nan)), ElementsAre(AnchorMatch{0, 0}, AnchorMatch{1, 0}));
}

TEST(AnchorGrouping, IsOnePassOverTheItemsWhateverTheConcurrency) {
    // Counts around the batch of 64; the radius at times equals a distance.
    for (const int count : {63, 64, 65, 400}) {
        const Lattice lattice(count, static_cast<unsigned>(count), 9);
        for (const float radius : {1.0F, 3.0F, 4.5F}) {
            const auto expected = matchesByTrying(count, radius, lattice);
            for (const int width : {0, 1, 4, 9}) EXPECT_EQ(group(count, radius, lattice, width), expected);
        }
    }
}

TEST(AnchorGrouping, SurvivesDistancesThatAreNoNumbers) {
    const Lattice lattice(300, 8, 9);
    const AnyDistance holey = [&](int i, int j) { return (i * j) % 11 == 3 ? nan : lattice(i, j); };
    const auto matches = group(300, 2, holey);
    ASSERT_EQ(matches.size(), 300U);
    for (const auto& match : matches) EXPECT_LE(match.distance, 2);
}

TEST(AnchorGrouping, ReportsEveryItemInOrder) {
    std::vector<int> reported;
    AnchorGrouping::matches(130, 2, 4, Lattice(130, 6, 9), [&](int done) { reported.push_back(done); }, {});
    std::vector<int> expected(130);
    std::iota(expected.begin(), expected.end(), 1);
    EXPECT_EQ(reported, expected);
}

TEST(AnchorGrouping, FailsWhereADistanceFailsAndStopsWhereAskedTo) {
    const Lattice lattice(300, 7, 9);
    std::atomic<int> calls = 0;
    const AnyDistance failing = [&](int i, int j) {
        if (++calls == 2000) throw std::runtime_error("no distance");
        return lattice(i, j);
    };
    EXPECT_THROW(group(300, 1, failing), std::runtime_error);

    // A stop at any moment ends the run within the few distances that are computed until the workers' token,
    // which a callback sets, follows.
    for (const int moment : {1, 50, 3000}) {
        std::stop_source source;
        calls = 0;
        const AnyDistance stopping = [&](int i, int j) {
            if (++calls == moment) source.request_stop();
            return lattice(i, j);
        };
        EXPECT_THROW(
            AnchorGrouping::matches(300, 1, 4, stopping, [](int) {}, source.get_token()), tasks::Cancelled);
        EXPECT_LE(calls, moment + 50);
    }
}

} // namespace
} // namespace lumisort::similarity
