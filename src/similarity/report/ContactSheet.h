#pragma once

#include "platform/files/FileUrl.h"
#include "platform/images/Decoder.h"
#include "similarity/SimilarityGroup.h"

#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::similarity {

struct ContactSheetOptions {
    std::string title;    ///< what was searched for, e.g. "Visual Similarity"
    std::string subtitle; ///< how, e.g. "Balanced"; may be empty
    /// Lines about photos that were left out; shown behind the groups.
    std::vector<std::string> failures{};
    int thumbnailSide = 180; ///< longest side in pixels
    /// Photos of one group that are shown; the page names the number of the others.
    std::size_t mostPhotosOfGroup = 200;
    int width = images::mostDecodesAtOnce; ///< decoding threads
    /// The upright photo, longest side at most the given number of pixels; images::decoder() makes it unless
    /// a test says otherwise. A photo for which it throws images::ImageError is shown as a tile with the
    /// reason.
    std::function<images::Bitmap(const files::FileUrl&, int, const std::stop_token&)> thumbnail{};
};

/// Takes the next piece of the page. What it throws ends the run and comes out.
using PageSink = std::function<void(std::string_view)>;

/// Writes groups, as any method finds them, as one HTML page that needs nothing else: each photo with its
/// thumbnail, its name (as a link to the file), size, folder and, where there are any, its distance from the
/// group's first photo. The page is handed to `out` piece by piece on the calling thread; no more than a few
/// dozen thumbnails are held at once. Names need not be UTF-8. Throws tasks::Cancelled.
void writeContactSheet(const std::vector<SimilarityGroup>& groups, const ContactSheetOptions& options,
                       const PageSink& out, const std::stop_token& stop);

} // namespace lumisort::similarity
