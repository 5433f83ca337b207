#include "platform/images/decoding/Raw.h"

#include "platform/images/decoding/RawFile.h"

#include <algorithm>
#include <memory>

namespace lumisort::images {

ImageProperties readRawProperties(const FileBytes& file) {
    RawFile raw(file);
    RawFile::check(raw->adjust_sizes_info_only());
    return {.type = ImageType::raw,
            .width = raw->imgdata.sizes.iwidth,
            .height = raw->imgdata.sizes.iheight,
            .orientation = raw.orientation(),
            .dateTimeOriginal = raw.date()};
}

Picture openRaw(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop) {
    RawFile raw(file);
    const auto& sizes = raw->imgdata.sizes;
    checkDecodable(std::max(sizes.raw_width, sizes.width), std::max(sizes.raw_height, sizes.height));
    const int longest = std::max(sizes.width, sizes.height);

    auto& params = raw->imgdata.params;
    params.half_size = longest / 2 >= wanted.maxSide ? 1 : 0;
    params.use_camera_wb = 1;
    params.output_color = 1; // sRGB, with its own transfer curve
    params.gamm[0] = 1 / 2.4;
    params.gamm[1] = 12.92;
    params.output_bps = 8;

    LibRaw& library = *raw;
    raw.unpack(stop);
    raw.run(&LibRaw::dcraw_process, stop);
    int error = LIBRAW_SUCCESS;
    const std::shared_ptr<libraw_processed_image_t> developed(
        library.dcraw_make_mem_image(&error),
        [](libraw_processed_image_t* image) { LibRaw::dcraw_clear_mem(image); });
    RawFile::check(error);
    if (!developed || developed->type != LIBRAW_IMAGE_BITMAP || developed->bits != 8)
        RawFile::check(LIBRAW_DATA_ERROR);

    Picture picture{.storage = developed,
                    .image =
                        wrapSamples(developed->data, developed->width, developed->height, developed->colors)};
    const int factor = params.half_size && library.imgdata.idata.filters ? 2 : 1;
    picture.fullWidth = developed->width * factor;
    picture.fullHeight = developed->height * factor;
    picture.orientation = raw.orientation();
    return picture;
}

bool isRaw(FileSignature signature, const FileBytes& file) {
    if (signature != FileSignature::none) return signature == FileSignature::raw;
    try {
        const RawFile raw(file);
        // Bare dumps are uncompressed, with a byte per sample at least.
        return std::uint64_t{raw->imgdata.sizes.raw_width} * raw->imgdata.sizes.raw_height <= file.size();
    } catch (const ImageError&) {
        return false;
    }
}

} // namespace lumisort::images
