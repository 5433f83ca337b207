#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lumisort::film {

/// The size of the simulated negative. Raw values are stored, titles are shown.
enum class FilmFormat { mm35, mediumFormat };

/// Every format, in the order in which it is offered.
inline constexpr std::array allFilmFormats{FilmFormat::mm35, FilmFormat::mediumFormat};

constexpr std::string_view rawValue(FilmFormat format) {
    constexpr std::array<std::string_view, 2> names{"mm35", "mediumFormat"};
    return names[static_cast<std::size_t>(format)];
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

/// The format with this raw value; none for any other text.
constexpr std::optional<FilmFormat> filmFormatFromRawValue(std::string_view raw) {
    for (const FilmFormat format : allFilmFormats) {
        if (rawValue(format) == raw) return format;
    }
    return std::nullopt;
}

} // namespace lumisort::film
