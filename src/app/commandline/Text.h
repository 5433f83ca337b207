#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lumisort::app {

/// A path fit for one line of a terminal: control characters, and bytes that are no UTF-8, become \xNN, so
/// that a hostile name cannot move the cursor or fake a line. Everything else stays as it is.
std::string printable(std::string_view path);

/// "1 photo", "3 photos", "1,204 photos".
std::string counted(std::int64_t count, std::string_view noun);

} // namespace lumisort::app
