#include "platform/images/decoding/JpegEncoding.h"

#include "platform/images/decoding/Vips.h"

namespace lumisort::images {

std::string writeJpeg(const Bitmap& bitmap, int quality, int background) {
    const auto image = wrapSamples(bitmap.rgba().data(), bitmap.width(), bitmap.height(), 4);
    const std::unique_ptr<VipsArrayDouble, void (*)(VipsArrayDouble*)> grey(
        vips_array_double_newv(1, static_cast<double>(background)),
        [](VipsArrayDouble* array) { vips_area_unref(VIPS_AREA(array)); });
    const auto opaque = runVips(
        [&](VipsImage** out) { return vips_flatten(image.get(), out, "background", grey.get(), nullptr); });
    void* bytes = nullptr;
    std::size_t length = 0;
    if (vips_jpegsave_buffer(opaque.get(), &bytes, &length, "Q", quality, "strip", TRUE, "optimize_coding",
                             TRUE, nullptr)) {
        vips_error_clear();
        throw ImageError("The picture cannot be written as JPEG.");
    }
    const std::unique_ptr<void, decltype(&g_free)> owner(bytes, g_free);
    return {static_cast<const char*>(bytes), length};
}

} // namespace lumisort::images
