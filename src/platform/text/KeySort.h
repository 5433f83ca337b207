#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace lumisort::text {

/// The permutation that puts `keys` into byte order; equal keys keep their order. Made for many keys with
/// long common beginnings, as paths have: each byte of a common beginning is looked at once for each key, not
/// once for each comparison.
std::vector<std::size_t> sortedPermutation(const std::vector<std::string>& keys);

} // namespace lumisort::text
