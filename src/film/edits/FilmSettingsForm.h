#pragma once

#include "film/optics/FilmSettings.h"
#include "platform/json/Reader.h"
#include "platform/json/Writer.h"

namespace lumisort::film {

/// The JSON form of settings: an object with all eight fields under their names, keys sorted. Throws
/// std::invalid_argument on an adjustment that is not finite.
void write(json::Writer& out, const FilmSettings& settings);

/// Every key may be missing (or null). An edit that was stored before a key existed must look as it did then:
/// without "stock" it is color100 and without "colorSeparation" it has none, unlike a new edit. Throws
/// json::FormatError on a wrong type and on an unknown stock, paper or format.
FilmSettings readFilmSettings(json::Value value);

} // namespace lumisort::film
