#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lumisort::similarity {

/// "Analyzing 3 of 12…"
inline std::string progressText(std::string_view verb, std::size_t done, std::size_t total) {
    return std::string(verb) + " " + std::to_string(done) + " of " + std::to_string(total) + "…";
}

} // namespace lumisort::similarity
