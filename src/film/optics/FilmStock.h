#pragma once

#include "platform/text/EnumNames.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lumisort::film {

/// The film that is simulated. The raw values are what documents store and never change; the titles
/// are what a person reads.
enum class FilmStock { portra400, color100, color400, mono400 };

/// Every stock, in the order in which it is offered.
inline constexpr std::array allFilmStocks{FilmStock::portra400, FilmStock::color100, FilmStock::color400,
                                          FilmStock::mono400};

inline constexpr text::EnumNames<FilmStock, 4> filmStockNames{
    {"portra400", "color100", "color400", "mono400"}};

constexpr std::string_view storedName(FilmStock stock) {
    return filmStockNames.of(stock);
}

constexpr std::string_view title(FilmStock stock) {
    constexpr std::array<std::string_view, 4> titles{"Portrait 400 Study", "Color 100", "Color 400",
                                                     "Mono 400"};
    return titles[static_cast<std::size_t>(stock)];
}

} // namespace lumisort::film
