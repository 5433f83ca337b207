#include "model/Reports.h"

namespace lumisort::model {

void Reports::add(const Report& report) {
    assertMainThread();
    Q_EMIT added(report);
}

} // namespace lumisort::model
