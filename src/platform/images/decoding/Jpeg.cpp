#include "platform/images/decoding/Jpeg.h"

#include "platform/images/decoding/JpegReader.h"
#include "platform/images/decoding/TiffTags.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>

namespace lumisort::images {
namespace {

ImageProperties propertiesOf(const JpegReader& reader) {
    ExifFields fields = readExifFields(reader.exif());
    return {.type = ImageType::jpeg,
            .width = reader.info().image_width,
            .height = reader.info().image_height,
            .orientation = fields.orientation.value_or(Orientation::unchanged),
            .dateTimeOriginal = std::move(fields.dateTimeOriginal)};
}

/// The most that libjpeg may shrink while leaving the resampling filter, whose result is smoother than that
/// of whole blocks, its part: a factor of two, or when it must be fast any; and so that a pixel is left each
/// way.
int blockShrink(double shrink, Quality quality, std::int64_t shorterSide) {
    const int filterShare = quality == Quality::fine ? 2 : 1;
    for (const int factor : {8, 4, 2})
        if (shrink >= filterShare * factor && shorterSide >= factor) return factor;
    return 1;
}

/// libjpeg walks over the whole picture once for every scan, and an empty scan takes a few bytes: a small
/// file could keep it busy for hours. Encoders write about ten.
void checkScans(const FileBytes& file, const std::stop_token& stop) {
    constexpr int mostScans = 100;
    std::vector<std::uint8_t> block(1 << 20);
    bool marker = false;
    int scans = 0;
    for (std::uint64_t at = 0; at < file.size();) {
        tasks::checkCancelled(stop);
        const std::size_t count = file.read(at, block);
        if (count == 0) break;
        for (const auto byte : std::span(block).first(count)) {
            scans += marker && byte == 0xda ? 1 : 0;
            marker = byte == 0xff;
        }
        at += count;
    }
    if (scans > mostScans) throw ImageError("The picture is made of too many scans.");
}

/// The rows of a strip. libvips asks for them once each and in order, for that is how `vips_sequential`
/// reads.
int decodeStrip(VipsRegion* strip, void*, void* from, void*, gboolean*) {
    auto& reader = *static_cast<JpegReader*>(from);
    const auto& info = reader.info();
    // Inks are stored the other way round, as Adobe's programs began to; who reads JPEG takes it for the
    // rule.
    const bool inverted = info.out_color_space == JCS_CMYK;
    const VipsRect& area = strip->valid;
    try {
        for (int y = area.top; y < area.top + area.height; ++y) {
            if (static_cast<int>(info.output_scanline) != y) return -1;
            VipsPel* row = VIPS_REGION_ADDR(strip, 0, y);
            reader.readRow(row);
            if (inverted)
                for (auto& sample : std::span(row, VIPS_REGION_SIZEOF_LINE(strip))) sample = ~sample;
        }
        return 0;
    } catch (const std::exception&) {
        return -1;
    }
}

ImageReference rowsOf(JpegReader& reader) {
    const auto& info = reader.info();
    const auto kind = info.output_components == 1   ? VIPS_INTERPRETATION_B_W
                      : info.output_components == 3 ? VIPS_INTERPRETATION_sRGB
                                                    : VIPS_INTERPRETATION_CMYK;
    const ImageReference rows(vips_image_new());
    vips_image_init_fields(rows.get(), static_cast<int>(info.output_width),
                           static_cast<int>(info.output_height), info.output_components, VIPS_FORMAT_UCHAR,
                           VIPS_CODING_NONE, kind, 1, 1);
    if (const auto profile = reader.profile(); !profile.empty())
        vips_image_set_blob_copy(rows.get(), VIPS_META_ICC_NAME, profile.data(), profile.size());
    vips_image_set_int(rows.get(), VIPS_META_SEQUENTIAL, 1);
    return runVips([&](VipsImage** out) {
        return vips_image_pipelinev(rows.get(), VIPS_DEMAND_STYLE_THINSTRIP, nullptr) ||
               vips_image_generate(rows.get(), nullptr, decodeStrip, nullptr, &reader, nullptr) ||
               vips_sequential(rows.get(), out, "tile_height", DCTSIZE, nullptr);
    });
}

} // namespace

ImageProperties readJpegProperties(const FileBytes& file) {
    return propertiesOf(JpegReader(file, {}));
}

Picture openJpeg(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop) {
    const auto reader = std::make_shared<JpegReader>(file, stop);
    const ImageProperties properties = propertiesOf(*reader);
    checkDecodable(properties.width, properties.height);
    if (reader->info().jpeg_color_space == JCS_UNKNOWN) throw ImageError("The picture has unknown colours.");
    if (reader->hasManyScans()) checkScans(file, stop);
    reader->start(blockShrink(1 / scaleToFit(properties.width, properties.height, wanted.maxSide),
                              wanted.quality, std::min(properties.width, properties.height)));
    return {.storage = reader,
            .image = rowsOf(*reader),
            .fullWidth = properties.width,
            .fullHeight = properties.height,
            .orientation = properties.orientation,
            .alpha = Alpha::none};
}

} // namespace lumisort::images
