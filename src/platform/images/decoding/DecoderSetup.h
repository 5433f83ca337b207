#pragma once

#include "platform/images/Decoder.h"

namespace lumisort::images::decoding {

/// Sets the libraries up, after initialiseDecoder(); later calls do nothing. Any thread; throws
/// DecoderUnavailable.
void start(const DecoderOptions& options);

/// Whether the libraries may print.
bool isVerbose();

} // namespace lumisort::images::decoding
