#pragma once

#include "platform/images/ImageDecoder.h"

/// The functions of ImageDecoder.h and JpegEncoder.h, on the libraries. After start().
namespace lumisort::images::decoding {

ImageProperties readProperties(const files::FileUrl& url);
Bitmap decodeThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop);
Bitmap decodeRoughThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop);
std::optional<ImageType> sniffType(const files::FileUrl& url);
std::string encodeJpeg(const Bitmap& bitmap, int quality, int background);

} // namespace lumisort::images::decoding
