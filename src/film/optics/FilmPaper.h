#pragma once

#include "platform/text/EnumNames.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lumisort::film {

/// The paper on which the negative is printed. Raw values are stored, titles are shown.
enum class FilmPaper { glossy, soft };

/// Every paper, in the order in which it is offered.
inline constexpr std::array allFilmPapers{FilmPaper::glossy, FilmPaper::soft};

inline constexpr text::EnumNames<FilmPaper, 2> filmPaperNames{{"glossy", "soft"}};

constexpr std::string_view storedName(FilmPaper paper) {
    return filmPaperNames.of(paper);
}

constexpr std::string_view title(FilmPaper paper) {
    constexpr std::array<std::string_view, 2> titles{"Standard", "Soft"};
    return titles[static_cast<std::size_t>(paper)];
}

} // namespace lumisort::film
