#include "review/viewer/ViewActions.h"

namespace lumisort::review {

void addViewActions(ActionSet& actions, ui::PhotoView& view) {
    const auto pan = [&](ActionSet::Id id, int right, int down) {
        actions.add(id, [&view, right, down] { view.panBySteps(right, down); });
    };
    actions.add(ActionSet::Fit, [&view] { view.setActualPixels(false); });
    actions.add(ActionSet::ZoomIn, [&view] { view.zoomBySteps(1); });
    actions.add(ActionSet::ZoomOut, [&view] { view.zoomBySteps(-1); });
    pan(ActionSet::PanLeft, -1, 0);
    pan(ActionSet::PanRight, 1, 0);
    pan(ActionSet::PanUp, 0, -1);
    pan(ActionSet::PanDown, 0, 1);
}

} // namespace lumisort::review
