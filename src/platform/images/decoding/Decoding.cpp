#include "platform/images/decoding/Decoding.h"

#include "platform/images/decoding/Container.h"
#include "platform/images/decoding/Heif.h"
#include "platform/images/decoding/Jpeg.h"
#include "platform/images/decoding/Raster.h"
#include "platform/images/decoding/Raw.h"
#include "platform/tasks/Cancellation.h"

namespace lumisort::images::decoding {
namespace {

std::optional<ImageType> identify(const FileBytes& file) {
    switch (identifyContainer(file)) {
    case Container::jpeg:
        return ImageType::jpeg;
    case Container::png:
        return ImageType::png;
    case Container::tiff:
        return ImageType::tiff;
    case Container::heif:
        return ImageType::heif;
    case Container::raw:
        return ImageType::raw;
    case Container::unknown:
        return isBareRaw(file) ? std::optional(ImageType::raw) : std::nullopt;
    case Container::foreign:
        break;
    }
    return std::nullopt;
}

ImageType require(const std::optional<ImageType>& type) {
    if (!type) throw ImageError("The file is no photo of a kind that can be opened.");
    return *type;
}

Bitmap decode(const files::FileUrl& url, int maxSide, Shrinking shrinking, const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    const FileBytes file(url);
    try {
        switch (const ImageType type = require(identify(file))) {
        case ImageType::jpeg:
            return renderPicture(openJpeg(file, maxSide, shrinking, stop), maxSide, shrinking, stop);
        case ImageType::heif:
            return renderPicture(openHeif(file, stop), maxSide, shrinking, stop);
        case ImageType::raw:
            return renderPicture(openRaw(file, maxSide, stop), maxSide, shrinking, stop);
        default:
            return renderPicture(openRaster(file, type, stop), maxSide, shrinking, stop);
        }
    } catch (const ImageError&) {
        tasks::checkCancelled(stop); // A stop looks like a read error to the libraries.
        throw;
    } catch (const std::bad_alloc&) {
        throw ImageError("There is not enough memory for the photo.");
    }
}

} // namespace

ImageProperties readProperties(const files::FileUrl& url) {
    const FileBytes file(url);
    switch (const ImageType type = require(identify(file))) {
    case ImageType::jpeg:
        return readJpegProperties(file);
    case ImageType::heif:
        return readHeifProperties(file);
    case ImageType::raw:
        return readRawProperties(file);
    default:
        return readRasterProperties(file, type);
    }
}

Bitmap decodeThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop) {
    return decode(url, maxSide, Shrinking::fine, stop);
}

Bitmap decodeRoughThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop) {
    return decode(url, maxSide, Shrinking::fast, stop);
}

std::optional<ImageType> sniffType(const files::FileUrl& url) {
    return identify(FileBytes(url));
}

} // namespace lumisort::images::decoding
