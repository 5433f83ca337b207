#include "review/StatusLine.h"

#include "review/StatusText.h"

#include <utility>

namespace lumisort::review {

StatusLine::StatusLine(const model::ExclusiveTask& task, const model::Reports& reports)
    : task_(task), text_(statusText(model::NothingToRestore())) {
    connect(&reports, &model::Reports::added, this, &StatusLine::show);
}

void StatusLine::show(const model::Report& report) {
    // A look at the files must not cover what the task that runs reports.
    if (task_.busy() && std::holds_alternative<model::AvailabilitySummary>(report)) return;
    auto text = statusText(report);
    if (std::exchange(text_, text) != text) Q_EMIT changed();
}

} // namespace lumisort::review
