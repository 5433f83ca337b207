#pragma once

#include "platform/images/ImageDecoder.h"
#include "platform/images/JpegEncoder.h"

namespace lumisort::images {

/// What the library that decodes offers to the program, which loads it when the first photo is looked at.
/// Each entry is the function of the same name of ImageDecoder.h or JpegEncoder.h.
struct Decoding {
    decltype(&images::readProperties) readProperties;
    decltype(&images::decodeThumbnail) decodeThumbnail;
    decltype(&images::decodeRoughThumbnail) decodeRoughThumbnail;
    decltype(&images::sniffType) sniffType;
    decltype(&images::encodeJpeg) encodeJpeg;
};

/// The library, below a folder that holds the program, and the one function that it is asked for: it sets
/// itself up and throws ImageError where it cannot.
inline constexpr const char* decodingLibrary = "lib/lumisort/lumisort-decoding.so";
inline constexpr const char* decodingEntry = "lumisort_decoding";
using DecodingEntry = const Decoding* (*)(const DecoderOptions&);

} // namespace lumisort::images
