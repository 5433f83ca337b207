#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace lumisort::images {

/// File-name extensions of camera RAW formats, in lower case and sorted: what a scan takes for a photo and
/// what the film editor opens. The only list of them.
inline constexpr std::array<std::string_view, 24> rawExtensions{
    "3fr", "arw", "cr2", "cr3", "dng", "erf", "fff", "iiq", "kdc", "mef", "mos", "mrw",
    "nef", "nrw", "orf", "pef", "raf", "raw", "rw2", "rwl", "sr2", "srf", "srw", "x3f"};

/// Whether a file of this name is taken for a camera RAW file. The case of letters does not count.
inline bool hasRawExtension(std::string_view name) {
    const auto point = name.rfind('.');
    if (point == std::string_view::npos) return false;
    std::string extension(name.substr(point + 1));
    for (auto& letter : extension)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    return std::ranges::binary_search(rawExtensions, extension);
}

} // namespace lumisort::images
