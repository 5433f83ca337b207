#pragma once

#include "app/commandline/ExitStatus.h"
#include "app/desktop/DesktopOptions.h"

#include <stop_token>

namespace lumisort::app {

/// Opens the window and stays until it is closed, or `interrupted` is requested: the library is written
/// before this returns. Where the document's window is open already, that one comes forward instead and adds
/// the folders. A document that cannot be opened is told in a window of its own. Throws std::runtime_error
/// when the window cannot be loaded.
ExitStatus startDesktop(const DesktopOptions& options, const std::stop_token& interrupted);

} // namespace lumisort::app
