#pragma once

#include "film/optics/FilmSettings.h"

#include <optional>
#include <vector>

namespace lumisort::film {

/// Undo and redo of film settings. Consecutive changes of one control form one step until `seal` is called,
/// as when the slider is released.
class SettingsHistory {
public:
    /// Records a change away from `before`, made through the control with the number `control`.
    void record(const FilmSettings& before, int control);
    /// Ends the current step.
    void seal() { openControl_.reset(); }
    void clear() { *this = {}; }

    bool canUndo() const { return !past_.empty(); }
    bool canRedo() const { return !future_.empty(); }
    /// The settings before the last step; `now` becomes what redo returns. `now` itself without a step.
    FilmSettings undo(const FilmSettings& now) { return step(past_, future_, now); }
    FilmSettings redo(const FilmSettings& now) { return step(future_, past_, now); }

private:
    FilmSettings step(std::vector<FilmSettings>& from, std::vector<FilmSettings>& to,
                      const FilmSettings& now);

    std::vector<FilmSettings> past_, future_;
    std::optional<int> openControl_; ///< whose changes still join the last step
};

} // namespace lumisort::film
