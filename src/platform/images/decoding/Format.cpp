#include "platform/images/decoding/Format.h"

#include "platform/images/decoding/Heif.h"
#include "platform/images/decoding/Jpeg.h"
#include "platform/images/decoding/Raster.h"
#include "platform/images/decoding/Raw.h"

#include <algorithm>
#include <array>

namespace lumisort::images {
namespace {

template <FileSignature signature>
bool isMarked(FileSignature found, const FileBytes&) {
    return found == signature;
}

constexpr std::array formats{
    Format{ImageType::jpeg, isMarked<FileSignature::jpeg>, readJpegProperties, openJpeg},
    Format{ImageType::png, isMarked<FileSignature::png>, readPngProperties, openPng},
    Format{ImageType::tiff, isMarked<FileSignature::tiff>, readTiffProperties, openTiff},
    Format{ImageType::heif, isMarked<FileSignature::heif>, readHeifProperties, openHeif},
    Format{ImageType::raw, isRaw, readRawProperties, openRaw},
};

} // namespace

const Format* findFormat(const FileBytes& file) {
    const FileSignature signature = readSignature(file);
    const auto found =
        std::ranges::find_if(formats, [&](const Format& each) { return each.identify(signature, file); });
    return found == formats.end() ? nullptr : &*found;
}

} // namespace lumisort::images
