#pragma once

#include "film/optics/FilmPaper.h"
#include "film/optics/FilmStock.h"
#include "platform/text/EnumNames.h"

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

inline constexpr text::EnumNames<InspectedCube, 3> inspectedCubeNames{{"exposure", "negative", "paper"}};

constexpr std::string_view storedName(InspectedCube cube) {
    return inspectedCubeNames.of(cube);
}

/// A cube as a .cube text (UTF-8, ends with a line break): 33 nodes an axis, domain 0 to 1, red fastest. The
/// shortest digits that read back as the same 32-bit floats. Throws tasks::Cancelled within one blue slice of
/// a request to stop.
std::string cubeText(FilmStock stock, FilmPaper paper, InspectedCube cube, std::stop_token stop = {});

} // namespace lumisort::film
