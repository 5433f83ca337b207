#include "film/edits/FilmSettingsForm.h"

#include <string>

namespace lumisort::film {

using json::Value;

namespace {

template <class Case>
void readCase(Value value, std::optional<Case> (*fromRawValue)(std::string_view), Case& result) {
    const auto raw = json::text(value);
    const auto found = fromRawValue(raw);
    if (!found) throw json::FormatError("“" + std::string(raw) + "” is not known");
    result = *found;
}

} // namespace

void write(json::Writer& out, const FilmSettings& settings) {
    out.beginObject();
    out.key("colorSeparation").number(settings.colorSeparation);
    out.key("exposure").number(settings.exposure);
    out.key("format").text(rawValue(settings.format));
    out.key("grain").number(settings.grain);
    out.key("halation").number(settings.halation);
    out.key("paper").text(rawValue(settings.paper));
    out.key("printExposure").number(settings.printExposure);
    out.key("stock").text(rawValue(settings.stock));
    out.endObject();
}

FilmSettings readFilmSettings(Value value) {
    FilmSettings settings;
    settings.stock = FilmStock::color100;
    settings.colorSeparation = 0;
    json::eachField(value, [&](std::string_view key, Value field) {
        if (json::isNull(field)) return;
        if (key == "stock") readCase(field, filmStockFromRawValue, settings.stock);
        if (key == "paper") readCase(field, filmPaperFromRawValue, settings.paper);
        if (key == "format") readCase(field, filmFormatFromRawValue, settings.format);
        if (key == "exposure") settings.exposure = json::number(field);
        if (key == "printExposure") settings.printExposure = json::number(field);
        if (key == "grain") settings.grain = json::number(field);
        if (key == "halation") settings.halation = json::number(field);
        if (key == "colorSeparation") settings.colorSeparation = json::number(field);
    });
    return settings;
}

} // namespace lumisort::film
