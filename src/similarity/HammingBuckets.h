#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// Keys and, behind the room for all of them, their values, in one block of memory that another owns.
struct HammingBucket {
    std::uint64_t* keys = nullptr;
    std::uint32_t size = 0;
    std::uint32_t capacity = 0;

    int* values() const { return reinterpret_cast<int*>(keys + capacity); }
};

struct HammingHit {
    std::uint64_t key = 0;
    int value = 0;
    int distance = 0;
};

/// Appends to `hits` all that differs from `hash` in at most `radius` bits in the buckets table[first ^
/// difference], for every one of `differences`. Looks at `stop` before each bucket and throws
/// tasks::Cancelled.
void searchBuckets(const HammingBucket* table, std::size_t first, std::span<const std::uint16_t> differences,
                   std::uint64_t hash, int radius, std::vector<HammingHit>& hits,
                   const std::stop_token& stop);

} // namespace lumisort::similarity
