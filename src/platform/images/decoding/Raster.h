#pragma once

#include "platform/images/decoding/ByteSource.h"
#include "platform/images/decoding/Picture.h"

namespace lumisort::images {

/// PNG and TIFF, each through its loader of libvips. All throw ImageError.
ImageProperties readPngProperties(const FileBytes& file);
ImageProperties readTiffProperties(const FileBytes& file);
Picture openPng(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop);
Picture openTiff(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop);

} // namespace lumisort::images
