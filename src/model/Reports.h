#pragma once

#include "model/MainThreadObject.h"
#include "model/Report.h"

namespace lumisort::model {

/// Tells observers what the parts of the model report, in the order in which they do. Main thread.
class Reports : public MainThreadObject {
    Q_OBJECT

public:
    void add(const Report& report);

Q_SIGNALS:
    void added(const lumisort::model::Report& report);
};

} // namespace lumisort::model
