#pragma once

#include <array>
#include <string_view>

namespace lumisort::images {

/// File-name extensions of camera RAW formats, in lower case and sorted: what a scan takes for a photo and
/// what the film editor opens. The only list of them.
inline constexpr std::array<std::string_view, 24> rawExtensions{
    "3fr", "arw", "cr2", "cr3", "dng", "erf", "fff", "iiq", "kdc", "mef", "mos", "mrw",
    "nef", "nrw", "orf", "pef", "raf", "raw", "rw2", "rwl", "sr2", "srf", "srw", "x3f"};

} // namespace lumisort::images
