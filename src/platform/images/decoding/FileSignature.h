#pragma once

#include "platform/images/decoding/ByteSource.h"

namespace lumisort::images {

/// What the first bytes of a file, and for TIFF-like files the directories, say it is.
enum class FileSignature {
    jpeg,
    png,
    tiff,
    heif,    ///< HEVC brands only; AV1 stills are not among the formats that the program opens
    raw,     ///< a camera's own container with sensor data
    none,    ///< no mark at all; some old cameras write bare samples
    foreign, ///< marked as something that is no photo: text, a document, another picture format
};

FileSignature readSignature(const ByteSource& bytes);

} // namespace lumisort::images
