#include "platform/images/decoding/Raster.h"

#include "platform/images/decoding/TiffTags.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace lumisort::images {
namespace {

/// Real headers stay far below, with profiles, previews and depth maps; a hostile one would fill the memory.
constexpr std::uint64_t mostHeaderBytes = 64 << 20;

/// Colours, an alpha, and what scanners and editors put beside them. Each channel costs memory.
constexpr int mostChannels = 8;

/// What libvips reads a file through. `position` is the library's, so one of these serves one loader.
struct Stream {
    const FileBytes* file;
    std::stop_token stop;
    std::uint64_t left; ///< how much may still be read
    std::uint64_t position = 0;
};

gint64 readStream(VipsSourceCustom*, void* buffer, gint64 length, Stream* stream) {
    if (stream->stop.stop_requested()) return -1; // Ends the decode between two blocks.
    const auto wanted = static_cast<std::size_t>(std::min(static_cast<std::uint64_t>(length), stream->left));
    const auto count = stream->file->read(stream->position, {static_cast<std::uint8_t*>(buffer), wanted});
    stream->position += count;
    stream->left -= count;
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

Reference<VipsSource> openSource(const FileBytes& file, std::uint64_t mostBytes,
                                 const std::stop_token& stop) {
    auto* source = vips_source_custom_new();
    auto* stream = new Stream{&file, stop, mostBytes};
    g_object_set_data_full(G_OBJECT(source), "stream", stream,
                           [](gpointer owned) { delete static_cast<Stream*>(owned); });
    g_signal_connect(source, "read", G_CALLBACK(readStream), stream);
    g_signal_connect(source, "seek", G_CALLBACK(seekStream), stream);
    return Reference<VipsSource>(VIPS_SOURCE(source));
}

ImageReference load(const FileBytes& file, ImageType type, std::uint64_t mostBytes,
                    const std::stop_token& stop) {
    const auto source = openSource(file, mostBytes, stop);
    return runVips([&](VipsImage** out) {
        const auto loader = type == ImageType::png ? vips_pngload_source : vips_tiffload_source;
        return loader(source.get(), out, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on", VIPS_FAIL_ON_TRUNCATED,
                      nullptr);
    });
}

/// Whether a channel behind the colours is transparency; libvips takes any for that, and has it straight.
Alpha alphaOf(const FileBytes& file, ImageType type) {
    return type == ImageType::tiff && readExtraSample(file) == 0 ? Alpha::none : Alpha::straight;
}

ImageProperties readRasterProperties(const FileBytes& file, ImageType type) {
    const auto image = load(file, type, mostHeaderBytes, {});
    ImageProperties properties{.type = type, .width = image->Xsize, .height = image->Ysize};
    ExifFields fields;
    const void* block = nullptr;
    std::size_t size = 0;
    if (type == ImageType::tiff)
        fields = readExifFields(file);
    else if (vips_image_get_typeof(image.get(), VIPS_META_EXIF_NAME) != 0 &&
             vips_image_get_blob(image.get(), VIPS_META_EXIF_NAME, &block, &size) == 0)
        fields = readExifFields(std::span(static_cast<const std::uint8_t*>(block), size));
    properties.orientation = fields.orientation.value_or(Orientation::unchanged);
    properties.dateTimeOriginal = std::move(fields.dateTimeOriginal);
    return properties;
}

Picture openRaster(const FileBytes& file, ImageType type, const std::stop_token& stop) {
    const ImageProperties properties = readRasterProperties(file, type);
    checkDecodable(properties.width, properties.height);
    auto image = load(file, type, std::numeric_limits<std::uint64_t>::max(), stop);
    if (image->Bands > mostChannels) throw ImageError("The picture has too many channels.");
    return {.image = std::move(image),
            .fullWidth = properties.width,
            .fullHeight = properties.height,
            .orientation = properties.orientation,
            .alpha = alphaOf(file, type)};
}

} // namespace

ImageProperties readPngProperties(const FileBytes& file) {
    return readRasterProperties(file, ImageType::png);
}

ImageProperties readTiffProperties(const FileBytes& file) {
    return readRasterProperties(file, ImageType::tiff);
}

Picture openPng(const FileBytes& file, const WantedSize&, const std::stop_token& stop) {
    return openRaster(file, ImageType::png, stop);
}

Picture openTiff(const FileBytes& file, const WantedSize&, const std::stop_token& stop) {
    return openRaster(file, ImageType::tiff, stop);
}

} // namespace lumisort::images
