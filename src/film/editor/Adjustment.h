#pragma once

#include "film/optics/FilmSettings.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace lumisort::film {

/// One slider of the editor: the settings' member that it moves, its range and how its value is written.
struct Adjustment {
    enum class Unit { stops, percent };
    enum class Section { light, print, grainAndHalation };

    std::string_view title;
    double FilmSettings::* value;
    double from, to, step;
    Unit unit;
    Section section;
    std::string_view help;

    /// "+0.35 EV" or "35%".
    std::string text(double amount) const;
    /// The amount that a typed text means, within the range and on a step; none for what is no number. The
    /// unit may be left out.
    std::optional<double> parse(std::string_view typed) const;
    /// The nearest step within the range.
    double snapped(double amount) const;
    double defaultValue() const { return FilmSettings().*value; }
};

/// All sliders, in the order in which they are shown.
inline constexpr std::array adjustments{
    Adjustment{"Exposure", &FilmSettings::exposure, -3, 3, 0.05, Adjustment::Unit::stops,
               Adjustment::Section::light, ""},
    Adjustment{"Print Exposure", &FilmSettings::printExposure, -2, 2, 0.05, Adjustment::Unit::stops,
               Adjustment::Section::print, ""},
    Adjustment{"Color Separation", &FilmSettings::colorSeparation, 0, 1, 0.01, Adjustment::Unit::percent,
               Adjustment::Section::print,
               "Modelled interaction between film layers. Chemistry parameters are approximate."},
    Adjustment{"Grain", &FilmSettings::grain, 0, 1, 0.01, Adjustment::Unit::percent,
               Adjustment::Section::grainAndHalation, ""},
    Adjustment{"Halation", &FilmSettings::halation, 0, 1, 0.01, Adjustment::Unit::percent,
               Adjustment::Section::grainAndHalation, ""},
};

} // namespace lumisort::film
