#pragma once

#include <cstdio>
#include <cstdlib>

namespace lumisort::film {

/// Stops the program with a message when a condition on constant data or on a caller inside the
/// program does not hold. Never for what a user or a file brings.
inline void require(bool holds, const char* message) {
    if (holds) return;
    std::fprintf(stderr, "lumisort: %s\n", message);
    std::abort();
}

} // namespace lumisort::film
