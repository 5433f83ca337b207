#include "platform/images/decoding/LocalDecoder.h"

#include "platform/images/decoding/CarriedMetadata.h"
#include "platform/images/decoding/Format.h"
#include "platform/images/decoding/JpegEncoding.h"
#include "platform/images/decoding/RawDevelopment.h"
#include "platform/images/decoding/SrgbProfile.h"
#include "platform/tasks/Cancellation.h"

namespace lumisort::images {
namespace {

const Format& require(const Format* format) {
    if (!format) throw ImageError("The file is no photo of a kind that can be opened.");
    return *format;
}

} // namespace

std::optional<ImageType> LocalDecoder::identify(const files::FileUrl& url) const {
    const Format* format = findFormat(FileBytes(url));
    return format ? std::optional(format->type) : std::nullopt;
}

ImageProperties LocalDecoder::properties(const files::FileUrl& url) const {
    const FileBytes file(url);
    return require(findFormat(file)).properties(file);
}

Bitmap LocalDecoder::thumbnail(const files::FileUrl& url, int maxSide, Quality quality,
                               const std::stop_token& stop) const {
    tasks::checkCancelled(stop);
    const FileBytes file(url);
    try {
        auto picture = require(findFormat(file)).open(file, {maxSide, quality}, stop);
        return renderPicture(std::move(picture), {maxSide, quality}, stop);
    } catch (const ImageError&) {
        tasks::checkCancelled(stop); // A stop looks like a read error to the libraries.
        throw;
    } catch (const std::bad_alloc&) {
        throw ImageError("There is not enough memory for the photo.");
    }
}

DevelopedPhoto LocalDecoder::develop(const files::FileUrl& url, const RawDevelopment& development,
                                     const std::stop_token& stop) const {
    tasks::checkCancelled(stop);
    const FileBytes file(url);
    if (require(findFormat(file)).type != ImageType::raw) throw ImageError("The photo is no camera raw.");
    try {
        return developRaw(file, development, stop);
    } catch (const std::bad_alloc&) {
        throw ImageError("There is not enough memory for the photo.");
    }
}

std::string LocalDecoder::tiffHead(const files::FileUrl& photo, int width, int height) const {
    constexpr std::uint16_t profileTag = 34675;
    TiffMetadata metadata;
    try {
        metadata = carriedMetadata(FileBytes(photo));
    } catch (const ImageError&) { // NOLINT(bugprone-empty-catch): The photo went while it was developed.
    }
    metadata.image[profileTag] = TiffField::of(TiffField::Type::undefined, srgbProfile());
    return images::tiffHead(width, height, std::move(metadata));
}

std::string LocalDecoder::encodeJpeg(const Bitmap& bitmap, int quality, int background) const {
    return writeJpeg(bitmap, quality, background);
}

} // namespace lumisort::images
