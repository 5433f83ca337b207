#pragma once

#include "platform/images/Decoder.h"

namespace lumisort::images {

/// The shared library that decodes, below a folder that holds the program, and the one function that it
/// exports: it sets the library up and throws DecoderUnavailable where it cannot.
inline constexpr const char* decoderLibrary = "lib/lumisort/lumisort-decoding.so";
inline constexpr const char* decoderEntry = "lumisort_decoder";
using DecoderEntry = const Decoder* (*)(const DecoderOptions&);

} // namespace lumisort::images
