#include "platform/images/Decoding.h"
#include "platform/images/decoding/DecoderSetup.h"
#include "platform/images/decoding/Decoding.h"

namespace lumisort::images {

extern "C" const Decoding* lumisort_decoding(const DecoderOptions& options) {
    decoding::start(options);
    static constexpr Decoding functions{decoding::readProperties, decoding::decodeThumbnail,
                                        decoding::decodeRoughThumbnail, decoding::sniffType,
                                        decoding::encodeJpeg};
    return &functions;
}

} // namespace lumisort::images
