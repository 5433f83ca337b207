#include "film/editor/Adjustment.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace lumisort::film {

std::string Adjustment::text(double amount) const {
    std::array<char, 32> buffer{};
    if (unit == Unit::stops)
        std::snprintf(buffer.data(), buffer.size(), "%+.2f EV", amount);
    else
        std::snprintf(buffer.data(), buffer.size(), "%ld%%", std::lround(amount * 100));
    return buffer.data();
}

std::optional<double> Adjustment::parse(std::string_view typed) const {
    const auto first = typed.find_first_not_of(" +");
    if (first == std::string_view::npos) return std::nullopt;
    typed.remove_prefix(first);
    double number = 0;
    const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), number);
    if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
    auto rest = typed.substr(static_cast<std::size_t>(end - typed.data()));
    while (rest.starts_with(' ')) rest.remove_prefix(1);
    const std::string_view suffix = unit == Unit::stops ? "EV" : "%";
    if (!rest.empty() && rest != suffix) return std::nullopt;
    return snapped(unit == Unit::stops ? number : number / 100);
}

double Adjustment::snapped(double amount) const {
    // Steps are decimal fractions; dividing by their whole number keeps 0.35 the number that is written so.
    const double perUnit = std::round(1 / step);
    return std::clamp(std::round(amount * perUnit) / perUnit, from, to);
}

} // namespace lumisort::film
