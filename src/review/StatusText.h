#pragma once

#include "model/Report.h"

#include <QString>

namespace lumisort::review {

/// The text of the status line for a report: a main phrase and optional parts behind " · ".
QString statusText(const model::Report& report);

/// The text of the notice bar, "" for a report that is none to be dismissed by the user.
QString noticeText(const model::Report& report);

} // namespace lumisort::review
