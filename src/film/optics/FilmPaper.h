#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lumisort::film {

/// The paper on which the negative is printed. Raw values are stored, titles are shown.
enum class FilmPaper { glossy, soft };

/// Every paper, in the order in which it is offered.
inline constexpr std::array allFilmPapers{FilmPaper::glossy, FilmPaper::soft};

constexpr std::string_view rawValue(FilmPaper paper) {
    constexpr std::array<std::string_view, 2> names{"glossy", "soft"};
    return names[static_cast<std::size_t>(paper)];
}

constexpr std::string_view title(FilmPaper paper) {
    constexpr std::array<std::string_view, 2> titles{"Standard", "Soft"};
    return titles[static_cast<std::size_t>(paper)];
}

/// The paper with this raw value; none for any other text.
constexpr std::optional<FilmPaper> filmPaperFromRawValue(std::string_view raw) {
    for (const FilmPaper paper : allFilmPapers) {
        if (rawValue(paper) == raw) return paper;
    }
    return std::nullopt;
}

} // namespace lumisort::film
