#pragma once

#include "platform/images/Decoder.h"

#include <vips/vips.h>

#include <memory>

namespace lumisort::images {

struct Unreference {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class Object>
using Reference = std::unique_ptr<Object, Unreference>;
using ImageReference = Reference<VipsImage>;

/// The message for a picture whose data is damaged. The libraries' own messages stay unused: libvips collects
/// those of all threads in one buffer.
inline constexpr const char* damagedPicture = "The picture data is damaged or incomplete.";

/// One operation of libvips, `runVips([&](VipsImage** out) { return vips_invert(in, out, nullptr); })`.
/// Throws ImageError when it fails.
template <class Operation>
ImageReference runVips(Operation&& operation) {
    VipsImage* out = nullptr;
    const int failed = operation(&out);
    ImageReference result(out);
    if (failed) {
        vips_error_clear();
        throw ImageError(damagedPicture);
    }
    return result;
}

/// 8-bit samples of 1, 3 or 4 channels without padding, which stay where they are and must outlive the image.
inline ImageReference wrapSamples(const std::uint8_t* samples, int width, int height, int channels) {
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                       static_cast<std::size_t>(channels);
    auto image = ImageReference(
        vips_image_new_from_memory(samples, bytes, width, height, channels, VIPS_FORMAT_UCHAR));
    if (!image) throw ImageError(damagedPicture);
    image->Type = channels == 1 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB;
    // Lets shrinking keep the rows between its steps, as for files; otherwise it makes each of them six
    // times.
    vips_image_set_int(image.get(), VIPS_META_SEQUENTIAL, 1);
    return image;
}

} // namespace lumisort::images
