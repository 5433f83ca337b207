#pragma once

#include "review/actions/ActionSet.h"
#include "review/marks/MarkHistory.h"

#include <functional>
#include <vector>

namespace lumisort::review {

/// Adds Keep, Skip and Clear Mark to a scope. `target` returns the photos to mark; `reason` says why they
/// cannot be marked now. The history outlives the actions.
void addMarkActions(ActionSet& actions, MarkHistory& history,
                    const std::function<std::vector<library::Photo>()>& target,
                    const ActionSet::Reason& reason = {});

/// Adds Undo and Redo of marks. The history outlives the actions.
void addUndoActions(ActionSet& actions, MarkHistory& history);

} // namespace lumisort::review
