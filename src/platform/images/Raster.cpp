#include "platform/images/Raster.h"

#include "platform/images/TiffTags.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cstdio>

namespace lumisort::images {
namespace {

/// What libvips reads a file through. `position` is the library's, so one of these serves one loader.
struct Stream {
    const FileBytes* file;
    std::stop_token stop;
    std::uint64_t position = 0;
};

gint64 readStream(VipsSourceCustom*, void* buffer, gint64 length, Stream* stream) {
    if (stream->stop.stop_requested()) return -1; // Ends the decode between two blocks.
    const auto count = stream->file->read(
        stream->position, {static_cast<std::uint8_t*>(buffer), static_cast<std::size_t>(length)});
    stream->position += count;
    return static_cast<gint64>(count);
}

gint64 seekStream(VipsSourceCustom*, gint64 offset, int whence, Stream* stream) {
    const auto size = static_cast<gint64>(stream->file->size());
    const gint64 base = whence == SEEK_SET   ? 0
                        : whence == SEEK_END ? size
                                             : static_cast<gint64>(stream->position);
    if (offset < -base) return -1;
    stream->position = static_cast<std::uint64_t>(base + offset);
    return base + offset;
}

Reference<VipsSource> openSource(const FileBytes& file, const std::stop_token& stop) {
    auto* source = vips_source_custom_new();
    auto* stream = new Stream{&file, stop};
    g_object_set_data_full(G_OBJECT(source), "stream", stream,
                           [](gpointer owned) { delete static_cast<Stream*>(owned); });
    g_signal_connect(source, "read", G_CALLBACK(readStream), stream);
    g_signal_connect(source, "seek", G_CALLBACK(seekStream), stream);
    return Reference<VipsSource>(VIPS_SOURCE(source));
}

/// `shrink` is 1, 2, 4 or 8 and works for JPEG alone.
ImageReference load(const FileBytes& file, ImageType type, int shrink, const std::stop_token& stop) {
    const auto source = openSource(file, stop);
    return runVips([&](VipsImage** out) {
        switch (type) {
        case ImageType::jpeg:
            return vips_jpegload_source(source.get(), out, "access", VIPS_ACCESS_SEQUENTIAL, "shrink", shrink,
                                        "fail_on", VIPS_FAIL_ON_TRUNCATED, nullptr);
        case ImageType::png:
            return vips_pngload_source(source.get(), out, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                       VIPS_FAIL_ON_TRUNCATED, nullptr);
        default:
            return vips_tiffload_source(source.get(), out, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                        VIPS_FAIL_ON_TRUNCATED, nullptr);
        }
    });
}

ImageProperties describe(const FileBytes& file, ImageType type, VipsImage* image) {
    ImageProperties properties{.type = type, .width = image->Xsize, .height = image->Ysize};
    ExifFields fields;
    const void* block = nullptr;
    std::size_t size = 0;
    if (type == ImageType::tiff)
        fields = readExifFields(file);
    else if (vips_image_get_typeof(image, VIPS_META_EXIF_NAME) != 0 &&
             vips_image_get_blob(image, VIPS_META_EXIF_NAME, &block, &size) == 0)
        fields = readExifFields(std::span(static_cast<const std::uint8_t*>(block), size));
    properties.orientation = std::max(1, fields.orientation);
    properties.dateTimeOriginal = std::move(fields.dateTimeOriginal);
    return properties;
}

/// The most that libjpeg may shrink while leaving a factor of two to the resampling filter, whose result is
/// smoother than that of whole blocks.
int blockShrink(double shrink) {
    return shrink >= 16 ? 8 : shrink >= 8 ? 4 : shrink >= 4 ? 2 : 1;
}

} // namespace

ImageProperties readRasterProperties(const FileBytes& file, ImageType type) {
    return describe(file, type, load(file, type, 1, {}).get());
}

Picture openRaster(const FileBytes& file, ImageType type, int maxSide, const std::stop_token& stop) {
    Picture picture{.image = load(file, type, 1, stop)};
    const ImageProperties properties = describe(file, type, picture.image.get());
    checkDecodable(properties.width, properties.height);
    picture.fullWidth = properties.width;
    picture.fullHeight = properties.height;
    picture.orientation = properties.orientation;
    const int shrink = blockShrink(1 / scaleToFit(properties.width, properties.height, maxSide));
    if (type == ImageType::jpeg && shrink > 1) picture.image = load(file, type, shrink, stop);
    return picture;
}

} // namespace lumisort::images
