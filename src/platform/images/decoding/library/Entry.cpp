#include "platform/images/DecoderLibrary.h"
#include "platform/images/decoding/DecoderSetup.h"
#include "platform/images/decoding/LocalDecoder.h"

namespace lumisort::images {

extern "C" const Decoder* lumisort_decoder(const DecoderOptions& options) {
    decoding::start(options);
    static const LocalDecoder decoder;
    return &decoder;
}

} // namespace lumisort::images
