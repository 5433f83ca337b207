#pragma once

#include "review/actions/ActionSet.h"
#include "ui/PhotoView.h"

namespace lumisort::review {

/// Adds fitting, zooming and panning to a scope. The view outlives the actions.
void addViewActions(ActionSet& actions, ui::PhotoView& view);

} // namespace lumisort::review
