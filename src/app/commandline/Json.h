#pragma once

#include "platform/json/Writer.h"

#include <functional>
#include <ostream>

namespace lumisort::app {

/// Streams one JSON text and a line end to `out`.
void printJson(std::ostream& out, const std::function<void(json::Writer&)>& write);

} // namespace lumisort::app
