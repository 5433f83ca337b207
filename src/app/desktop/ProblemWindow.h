#pragma once

#include <stop_token>
#include <string>

namespace lumisort::app {

/// Shows a window that says why the library cannot be opened, and returns when it is closed or `interrupted`
/// is requested. Main thread.
void showProblem(const std::string& message, const std::stop_token& interrupted);

} // namespace lumisort::app
