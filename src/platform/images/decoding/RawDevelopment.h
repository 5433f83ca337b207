#pragma once

#include "platform/images/RawDevelopment.h"
#include "platform/images/decoding/ByteSource.h"

#include <stop_token>

namespace lumisort::images {

/// Decoder::develop of a file that is known to be camera RAW.
DevelopedPhoto developRaw(const FileBytes& file, const RawDevelopment& development,
                          const std::stop_token& stop);

} // namespace lumisort::images
