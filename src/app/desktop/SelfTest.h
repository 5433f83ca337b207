#pragma once

#include "app/commandline/ExitStatus.h"

#include <stop_token>

namespace lumisort::app {

/// Shows every page with libraries of its own and prints the page's name. Fails when QML or Qt Quick warns of
/// anything meanwhile, or a page stays blank. Needs the application object.
ExitStatus runSelfTest(const std::stop_token& stop);

} // namespace lumisort::app
