#include "film/optics/FilmSettings.h"

#include <algorithm>
#include <cmath>

namespace lumisort::film {

namespace {

double clamped(double value, double initial, double lowest, double highest) {
    return std::clamp(std::isfinite(value) ? value : initial, lowest, highest);
}

FilmSettings limited(FilmSettings settings, double exposureStops, double printStops) {
    static constexpr FilmSettings initial;
    const auto limit = [&](double FilmSettings::* field, double lowest, double highest) {
        settings.*field = clamped(settings.*field, initial.*field, lowest, highest);
    };
    limit(&FilmSettings::exposure, -exposureStops, exposureStops);
    limit(&FilmSettings::printExposure, -printStops, printStops);
    limit(&FilmSettings::grain, 0, 1);
    limit(&FilmSettings::halation, 0, 1);
    limit(&FilmSettings::colorSeparation, 0, 1);
    return settings;
}

} // namespace

FilmSettings FilmSettings::validatedForEditing() const {
    return limited(*this, 3, 2);
}

FilmSettings FilmSettings::validated() const {
    return limited(*this, 5, 5);
}

} // namespace lumisort::film
