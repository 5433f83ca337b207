#include "film/inspect/CubeText.h"

#include "film/optics/FilmOptics.h"

#include <charconv>
#include <utility>

namespace lumisort::film {
namespace {

FilmLookupCube built(const FilmSpectralModel& model, InspectedCube cube, std::stop_token stop) {
    switch (cube) {
    case InspectedCube::negative:
        return negativeCube(model, 0, std::move(stop)).cube;
    case InspectedCube::paper:
        return paperCube(model, 0, std::move(stop)).cube;
    case InspectedCube::exposure:
        break;
    }
    return exposureCube(model, 0, std::move(stop)).cube;
}

std::string_view meaning(InspectedCube cube) {
    switch (cube) {
    case InspectedCube::exposure:
        return "linear RGB to relative layer exposures x 0.25";
    case InspectedCube::negative:
        return "dye densities / 3.2 to densities seen by the paper / 3.2";
    case InspectedCube::paper:
        return "paper dye densities / 3.2 to linear display RGB, less its minimum, over its range";
    }
    return "";
}

// Without an exponent, which some readers do not know.
void append(std::string& text, float number, char end) {
    std::array<char, 64> digits; // 1e-45, the smallest float, has 47
    const auto result =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
    text.append(digits.data(), result.ptr);
    text += end;
}

} // namespace

std::string cubeText(FilmStock stock, FilmPaper paper, InspectedCube kind, std::stop_token stop) {
    const FilmLookupCube cube = built(FilmSpectralModel(stock, paper), kind, std::move(stop));
    std::string text;
    text.reserve(cube.data().size() * 10);
    text.append("TITLE \"").append(title(stock)).append(" on ").append(title(paper)).append(" paper, ");
    text.append(storedName(kind)).append(" cube\"\n# ").append(meaning(kind)).append("\n");
    text += "LUT_3D_SIZE " + std::to_string(cube.dimension()) + "\n";
    text += "DOMAIN_MIN 0.0 0.0 0.0\nDOMAIN_MAX 1.0 1.0 1.0\n";
    const auto data = cube.data();
    for (std::size_t i = 0; i < data.size(); i += 4) {
        append(text, data[i], ' ');
        append(text, data[i + 1], ' ');
        append(text, data[i + 2], '\n');
    }
    return text;
}

} // namespace lumisort::film
