#include "library/OriginalLoader.h"

#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <new>

namespace lumisort::library {

images::PicturePyramid OriginalLoader::load(files::FileSystem& system, const files::FileUrl& url,
                                            const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    if (!system.isReadable(url.path()))
        throw OriginalError("Source unavailable. Reconnect the drive or check the file location.");
    try {
        const auto properties = images::decoder().properties(url);
        if (properties.width <= 0 || properties.height <= 0) throw OriginalError("The photo has no size.");
        if (static_cast<double>(properties.width) * static_cast<double>(properties.height) >
            static_cast<double>(maxPixels))
            throw OriginalError("Image exceeds the 80 MP preview limit. Open it externally.");
        const auto longest = static_cast<int>(std::max(properties.width, properties.height));
        images::PicturePyramid original(
            images::decoder().thumbnail(url, longest, images::Quality::fine, stop), stop);
        tasks::checkCancelled(stop);
        return original;
    } catch (const images::ImageError& error) {
        throw OriginalError(error.what());
    } catch (const std::bad_alloc&) {
        throw OriginalError("There is not enough memory for the photo.");
    }
}

} // namespace lumisort::library
