#pragma once

#include "platform/files/FileUrl.h"
#include "similarity/FingerprintCanvas.h"
#include "similarity/VisualFingerprint.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stop_token>
#include <string_view>

namespace lumisort::similarity {

/// Name and version of the algorithm below. Stored fingerprints are good only under the same name: whatever
/// changes fingerprints of unchanged photos changes it.
inline constexpr std::string_view fingerprintAlgorithm = "fingerprint 1";
/// Longest side of the photo that a fingerprint is made from.
inline constexpr int fingerprintThumbnailSidePixels = 256;
/// Frequencies looked at along each side, the lowest of the canvas's 32.
inline constexpr int frequencySide = 8;
/// Coefficients of an 8 × 8 block without its first, the mean.
inline constexpr std::size_t coefficientCount = std::size_t{frequencySide} * frequencySide - 1;

/// The fingerprint of one photo file: a pure function of its contents, for any thread. Throws
/// images::ImageError where the file is no readable photo and tasks::Cancelled.
VisualFingerprint fingerprint(const files::FileUrl& url, const std::stop_token& stop = {});

/// The fingerprint of what is drawn on a canvas, from a photo of the given width ÷ height.
VisualFingerprint fingerprint(const FingerprintCanvas& canvas, double aspect);

/// The perceptual hash of a photo in each Orientation, from the low frequencies of its upright
/// grey image: (vertical, horizontal) = (0, 1), (0, 2) … (7, 7). Bit i of a hash tells whether coefficient i
/// of the transformed image is strictly greater than the median of all 63; bit 63 is always clear.
std::array<std::uint64_t, orientationCount>
orientationHashes(std::span<const double, coefficientCount> coefficients);

} // namespace lumisort::similarity
