#pragma once

#include <string>

namespace lumisort::files {

/// A random UUID (RFC 4122, version 4) in upper-case text form: "8-4-4-4-12" hexadecimal digits. From the
/// kernel's random numbers; any thread.
std::string randomUuid();

} // namespace lumisort::files
