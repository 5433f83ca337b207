#pragma once

#include "platform/images/Decoder.h"
#include "platform/images/decoding/Vips.h"
#include "support/TemporaryFolder.h"

#include <array>
#include <string>

namespace lumisort::test {

using Rgba = std::array<int, 4>;

/// A picture without symmetry: gradients along both sides and a bright corner at the top left. 8-bit sRGB.
images::ImageReference asymmetricPicture(int width, int height);

/// One colour; as many bands as `samples` has.
images::ImageReference flatPicture(int width, int height, const std::vector<double>& samples,
                                   VipsBandFormat format, VipsInterpretation interpretation);

/// Writes through libvips; the name's ending chooses the format and may carry options, "a.png[palette]".
files::FileUrl save(VipsImage* image, const TemporaryFolder& folder, const std::string& name);

/// The same with an EXIF orientation and "2021:07:04 18:30:00" as DateTimeOriginal.
files::FileUrl saveTagged(VipsImage* image, int orientation, const TemporaryFolder& folder,
                          const std::string& ending);

std::string contents(const files::FileUrl& url);

/// The 8-bit sRGB image as it is.
images::Bitmap bitmapOf(VipsImage* image);

/// Mean absolute difference of the channels; a thousand where the sizes differ.
double difference(const images::Bitmap& a, const images::Bitmap& b);

Rgba pixel(const images::Bitmap& bitmap, int x, int y);

} // namespace lumisort::test
