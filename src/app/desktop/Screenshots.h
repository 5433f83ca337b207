#pragma once

#include "app/commandline/ExitStatus.h"
#include "app/desktop/DesktopOptions.h"

#include <stop_token>

namespace lumisort::app {

/// Writes a PNG of every page in both themes, with the library that the options name, into the folder that
/// they name, and prints each file's path. The library stays as it is. Throws std::runtime_error when the
/// document is in use or a file cannot be written. Needs the application object.
ExitStatus takeScreenshots(const DesktopOptions& options, const std::stop_token& stop);

} // namespace lumisort::app
