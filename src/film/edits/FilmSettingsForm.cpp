#include "film/edits/FilmSettingsForm.h"

#include <string>

namespace lumisort::film {

using json::Value;

namespace {

template <class Case, std::size_t N>
void readCase(Value value, const text::EnumNames<Case, N>& names, Case& result) {
    const auto name = json::text(value);
    const auto found = names.find(name);
    if (!found) throw json::FormatError("“" + std::string(name) + "” is not known");
    result = *found;
}

} // namespace

void write(json::Writer& out, const FilmSettings& settings) {
    out.beginObject();
    out.key("colorSeparation").number(settings.colorSeparation);
    out.key("exposure").number(settings.exposure);
    out.key("format").text(storedName(settings.format));
    out.key("grain").number(settings.grain);
    out.key("halation").number(settings.halation);
    out.key("paper").text(storedName(settings.paper));
    out.key("printExposure").number(settings.printExposure);
    out.key("stock").text(storedName(settings.stock));
    out.endObject();
}

FilmSettings readFilmSettings(Value value) {
    FilmSettings settings;
    settings.stock = FilmStock::color100;
    settings.colorSeparation = 0;
    json::eachField(value, [&](std::string_view key, Value field) {
        if (json::isNull(field)) return;
        if (key == "stock") readCase(field, filmStockNames, settings.stock);
        if (key == "paper") readCase(field, filmPaperNames, settings.paper);
        if (key == "format") readCase(field, filmFormatNames, settings.format);
        if (key == "exposure") settings.exposure = json::number(field);
        if (key == "printExposure") settings.printExposure = json::number(field);
        if (key == "grain") settings.grain = json::number(field);
        if (key == "halation") settings.halation = json::number(field);
        if (key == "colorSeparation") settings.colorSeparation = json::number(field);
    });
    return settings;
}

} // namespace lumisort::film
