#pragma once

#include <string>
#include <vector>

namespace lumisort::app {

/// The raw values of a closed set, as they are given on the command line.
template <class Values>
std::vector<std::string> namesOf(const Values& values) {
    std::vector<std::string> names;
    for (const auto value : values) names.emplace_back(storedName(value));
    return names;
}

} // namespace lumisort::app
