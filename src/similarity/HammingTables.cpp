#include "similarity/HammingTables.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <numeric>
#include <span>

namespace lumisort::similarity {

namespace {

constexpr int pieceCount = 4;
constexpr int pieceBits = 16;
constexpr std::size_t pieceValues = std::size_t{1} << pieceBits;
constexpr std::uint32_t smallestCapacity = 4;

constexpr std::size_t piece(std::uint64_t key, int number) {
    return (key >> (number * pieceBits)) & (pieceValues - 1);
}

/// In how many bits piece `number` may differ, −1 where it need not be looked up: the limits plus one share
/// out radius + 1 as evenly as can be, the first pieces taking what is left over.
constexpr int pieceLimit(int radius, int number) {
    return std::min((std::max(radius, -1) + pieceCount - number) / pieceCount - 1, pieceBits);
}

constexpr bool limitsCover(int radius) {
    int sum = 0;
    for (int number = 0; number < pieceCount; ++number) sum += pieceLimit(radius, number) + 1;
    return sum == radius + 1;
}
static_assert(limitsCover(-1) && limitsCover(0) && limitsCover(4) && limitsCover(8) && limitsCover(12) &&
              limitsCover(13) && limitsCover(63));

/// The differences that two pieces may have, fewest bits first.
class Differences {
public:
    Differences() : values_(pieceValues) {
        std::iota(values_.begin(), values_.end(), std::uint16_t{0});
        std::ranges::stable_sort(values_, {}, [](std::uint16_t value) { return std::popcount(value); });
        for (const auto value : values_) ++countUpTo_[std::popcount(value)];
        std::partial_sum(countUpTo_.begin(), countUpTo_.end(), countUpTo_.begin());
    }

    std::span<const std::uint16_t> upTo(int bits) const { return std::span(values_).first(countUpTo_[bits]); }

private:
    std::vector<std::uint16_t> values_;
    std::array<std::size_t, pieceBits + 1> countUpTo_{};
};

} // namespace

void HammingTables::insert(std::uint64_t key, int value) {
    buckets_.resize(pieceCount * pieceValues);
    for (int number = 0; number < pieceCount; ++number)
        append(buckets_[number * pieceValues + piece(key, number)], key, value);
}

void HammingTables::append(HammingBucket& bucket, std::uint64_t key, int value) {
    if (bucket.size == bucket.capacity) {
        HammingBucket larger{.size = bucket.size,
                             .capacity = std::max(smallestCapacity, 2 * bucket.capacity)};
        larger.keys = static_cast<std::uint64_t*>(memory_.allocate(
            larger.capacity * (sizeof(std::uint64_t) + sizeof(int)), alignof(std::uint64_t)));
        std::copy_n(bucket.keys, bucket.size, larger.keys);
        std::copy_n(bucket.values(), bucket.size, larger.values());
        bucket = larger;
    }
    bucket.keys[bucket.size] = key;
    bucket.values()[bucket.size] = value;
    ++bucket.size;
}

std::vector<HammingHit> HammingTables::find(std::uint64_t hash, int radius,
                                            const std::stop_token& stop) const {
    static const Differences differences;
    std::vector<HammingHit> hits;
    if (buckets_.empty()) return hits;
    for (int number = 0; number < pieceCount; ++number) {
        const int limit = pieceLimit(radius, number);
        if (limit < 0) break;
        const std::size_t known = hits.size();
        searchBuckets(buckets_.data() + number * pieceValues, piece(hash, number), differences.upTo(limit),
                      hash, radius, hits, stop);
        // A key that the lookup of an earlier piece found as well is in the list already.
        const auto foundEarlier = [&](const HammingHit& hit) {
            for (int earlier = 0; earlier < number; ++earlier)
                if (std::popcount(piece(hit.key ^ hash, earlier)) <= pieceLimit(radius, earlier)) return true;
            return false;
        };
        hits.erase(std::remove_if(hits.begin() + known, hits.end(), foundEarlier), hits.end());
    }
    return hits;
}

} // namespace lumisort::similarity
