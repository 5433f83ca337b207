#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/FileSignature.h"
#include "platform/images/decoding/Picture.h"

namespace lumisort::images {

/// What the decoder knows of one type of photo. All but `type` are functions that throw ImageError.
struct Format {
    ImageType type;
    /// Whether a file with these first bytes is of the type.
    bool (*identify)(FileSignature signature, const FileBytes& file);
    ImageProperties (*properties)(const FileBytes& file);
    /// The picture, where the format allows for it already about as small as it is wanted. Throws
    /// tasks::Cancelled.
    Picture (*open)(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop);
};

/// The format of the file, nullptr where it is of none.
const Format* findFormat(const FileBytes& file);

} // namespace lumisort::images
