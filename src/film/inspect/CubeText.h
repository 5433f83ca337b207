#pragma once

#include "film/optics/FilmPaper.h"
#include "film/optics/FilmStock.h"

#include <array>
#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace lumisort::film {

/// The lookup cubes by the names that the command line knows.
enum class InspectedCube { exposure, negative, paper };

inline constexpr std::array allInspectedCubes{InspectedCube::exposure, InspectedCube::negative,
                                              InspectedCube::paper};

constexpr std::string_view rawValue(InspectedCube cube) {
    constexpr std::array<std::string_view, 3> names{"exposure", "negative", "paper"};
    return names[static_cast<std::size_t>(cube)];
}

constexpr std::optional<InspectedCube> inspectedCubeFromRawValue(std::string_view raw) {
    for (const InspectedCube cube : allInspectedCubes) {
        if (rawValue(cube) == raw) return cube;
    }
    return std::nullopt;
}

/// A cube as a .cube text (UTF-8, ends with a line break): 33 nodes an axis, domain 0 to 1, red fastest. The
/// shortest digits that read back as the same 32-bit floats. Throws tasks::Cancelled within one blue slice of
/// a request to stop.
std::string cubeText(FilmStock stock, FilmPaper paper, InspectedCube cube, std::stop_token stop = {});

} // namespace lumisort::film
