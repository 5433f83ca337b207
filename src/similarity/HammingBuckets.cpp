#include "similarity/HammingBuckets.h"

#include "platform/tasks/Cancellation.h"

#include <bit>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "similarity/HammingBuckets.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

// Compiled once per processor generation for the sake of one instruction: counting bits, which the oldest
// 64-bit processors lack. A search waits for memory more than it computes, so wider vectors would gain
// nothing.
HWY_BEFORE_NAMESPACE();
namespace lumisort::similarity::HWY_NAMESPACE {

void searchBuckets(const HammingBucket* table, std::size_t first, std::span<const std::uint16_t> differences,
                   std::uint64_t hash, int radius, std::vector<HammingHit>& hits,
                   const std::stop_token& stop) {
    // Buckets lie scattered over memory. Ask for a bucket's head two lookaheads before it is searched, and
    // for its first two cache lines of keys one lookahead before, when the head has arrived.
    constexpr std::size_t lookahead = 12;
    constexpr std::size_t keysPerLine = 8;
    const std::size_t count = differences.size();
    for (std::size_t i = 0; i < count; ++i) {
        tasks::checkCancelled(stop);
        if (i + 2 * lookahead < count) __builtin_prefetch(&table[first ^ differences[i + 2 * lookahead]]);
        if (i + lookahead < count) {
            const std::uint64_t* keys = table[first ^ differences[i + lookahead]].keys;
            __builtin_prefetch(keys);
            __builtin_prefetch(keys + keysPerLine);
        }
        const HammingBucket& bucket = table[first ^ differences[i]];
        for (std::uint32_t entry = 0; entry < bucket.size; ++entry) {
            const int distance = std::popcount(bucket.keys[entry] ^ hash);
            if (distance <= radius) hits.push_back({bucket.keys[entry], bucket.values()[entry], distance});
        }
    }
}

} // namespace lumisort::similarity::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumisort::similarity {

HWY_EXPORT(searchBuckets);

void searchBuckets(const HammingBucket* table, std::size_t first, std::span<const std::uint16_t> differences,
                   std::uint64_t hash, int radius, std::vector<HammingHit>& hits,
                   const std::stop_token& stop) {
    HWY_DYNAMIC_DISPATCH(searchBuckets)(table, first, differences, hash, radius, hits, stop);
}

} // namespace lumisort::similarity
#endif
