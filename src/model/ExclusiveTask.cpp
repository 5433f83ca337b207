#include "model/ExclusiveTask.h"

namespace lumisort::model {

std::optional<ExclusiveTask::Hold> ExclusiveTask::begin() {
    assertMainThread();
    if (busy_) return std::nullopt;
    setBusy(true);
    return Hold(this);
}

void ExclusiveTask::setBusy(bool busy) {
    busy_ = busy;
    Q_EMIT busyChanged();
}

} // namespace lumisort::model
