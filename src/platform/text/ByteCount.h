#pragma once

#include <cstdint>
#include <string>

namespace lumisort::text {

/// A size as people read it, in decimal units: "0 bytes", "1 byte", "999 bytes", "1.0 kB", "12.4 MB",
/// "3.1 GB". `bytes` is not negative.
std::string byteCount(std::int64_t bytes);

} // namespace lumisort::text
