#pragma once

#include "platform/images/Decoder.h"

namespace lumisort::images {

/// Decodes in this process, on the libraries. After decoding::start().
class LocalDecoder final : public Decoder {
public:
    std::optional<ImageType> identify(const files::FileUrl& url) const override;
    ImageProperties properties(const files::FileUrl& url) const override;
    Bitmap thumbnail(const files::FileUrl& url, int maxSide, Quality quality,
                     const std::stop_token& stop) const override;
    DevelopedPhoto develop(const files::FileUrl& url, const RawDevelopment& development,
                           const std::stop_token& stop) const override;
    std::string tiffHead(const files::FileUrl& photo, int width, int height) const override;
    std::string encodeJpeg(const Bitmap& bitmap, int quality, int background) const override;
};

} // namespace lumisort::images
