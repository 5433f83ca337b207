#pragma once

#include "review/WindowState.h"
#include "review/actions/ActionSet.h"
#include "review/marks/MarkHistory.h"

#include <functional>

namespace lumisort::review {

/// Why no film editor can be opened for a photo now, "" where it can.
QString filmReason(const model::LibraryModel& model, const library::Photo& photo);

/// The actions of the library's window. They apply to the selection and follow the model by themselves. Main
/// thread; model and history outlive it.
class WindowActions : public ActionSet {
    Q_OBJECT

public:
    WindowActions(model::LibraryModel& model, WindowState& window, MarkHistory& marks);
};

} // namespace lumisort::review
