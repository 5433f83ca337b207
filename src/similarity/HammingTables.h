#pragma once

#include "similarity/HammingBuckets.h"
#include "similarity/HugePages.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// Finds 64-bit keys near a hash in large collections, exactly: multi-index hashing (Norouzi, Punjani, Fleet,
/// Fast search in Hamming space with multi-index hashing, 2012).
///
/// A key is cut into four pieces of 16 bits, and each piece has a table of buckets, one for each of its
/// values, that hold the keys with that value. Give the pieces limits t₀…t₃ with Σ(tᵢ + 1) = radius + 1: a
/// key that differs in more than tᵢ bits in every piece i differs in more than `radius` bits altogether, so
/// looking up, piece by piece, all values within tᵢ bits of the hash's own finds every key within the radius.
///
/// Takes 4 MB and about 100 bytes a key. For one thread at a time.
class HammingTables {
public:
    HammingTables() = default;
    HammingTables(const HammingTables&) = delete;
    HammingTables& operator=(const HammingTables&) = delete;

    /// Adds a value under a key; either may be there already.
    void insert(std::uint64_t key, int value);

    /// Every value whose key differs from `hash` in at most `radius` bits, in no particular order. Looks at
    /// `stop` before every bucket and throws tasks::Cancelled.
    std::vector<HammingHit> find(std::uint64_t hash, int radius, const std::stop_token& stop) const;

private:
    static constexpr std::size_t firstBlockBytes = 16 << 20;

    void append(HammingBucket& bucket, std::uint64_t key, int value);

    HugePages pages_;
    std::pmr::monotonic_buffer_resource memory_{firstBlockBytes,
                                                &pages_}; ///< a block outgrown stays until the end
    std::pmr::vector<HammingBucket> buckets_{
        &memory_}; ///< value v of piece p has bucket p · 65,536 + v; none at first
};

} // namespace lumisort::similarity
