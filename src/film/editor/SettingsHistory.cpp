#include "film/editor/SettingsHistory.h"

namespace lumisort::film {

void SettingsHistory::record(const FilmSettings& before, int control) {
    future_.clear();
    if (openControl_ == control) return;
    past_.push_back(before);
    openControl_ = control;
}

FilmSettings SettingsHistory::step(std::vector<FilmSettings>& from, std::vector<FilmSettings>& to,
                                   const FilmSettings& now) {
    seal();
    if (from.empty()) return now;
    to.push_back(now);
    const auto settings = from.back();
    from.pop_back();
    return settings;
}

} // namespace lumisort::film
