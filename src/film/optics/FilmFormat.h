#pragma once

#include "platform/text/EnumNames.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lumisort::film {

/// The size of the simulated negative. Raw values are stored, titles are shown.
enum class FilmFormat { mm35, mediumFormat };

/// Every format, in the order in which it is offered.
inline constexpr std::array allFilmFormats{FilmFormat::mm35, FilmFormat::mediumFormat};

inline constexpr text::EnumNames<FilmFormat, 2> filmFormatNames{{"mm35", "mediumFormat"}};

constexpr std::string_view storedName(FilmFormat format) {
    return filmFormatNames.of(format);
}

constexpr std::string_view title(FilmFormat format) {
    constexpr std::array<std::string_view, 2> titles{"35 mm", "Medium Format"};
    return titles[static_cast<std::size_t>(format)];
}

/// The scale of all spatial effects: grain, halation and diffusion are sized in micrometres on the film, and
/// the image's long edge in pixels stands for this length.
constexpr double longEdgeMM(FilmFormat format) {
    return format == FilmFormat::mm35 ? 36 : 60;
}

} // namespace lumisort::film
