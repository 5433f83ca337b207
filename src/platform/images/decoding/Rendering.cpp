#include "platform/images/decoding/ColourProfile.h"
#include "platform/images/decoding/Upright.h"
#include "platform/images/decoding/Picture.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace lumisort::images {
namespace {

/// How many of the first bands are colour; what follows them, if anything, starts with the alpha.
int colourBands(const VipsImage* image) {
    switch (vips_image_guess_interpretation(image)) {
    case VIPS_INTERPRETATION_B_W:
    case VIPS_INTERPRETATION_GREY16:
        return 1;
    case VIPS_INTERPRETATION_CMYK:
        return 4;
    default:
        return image->Bands >= 3 ? 3 : 1;
    }
}

/// The alpha of an opaque pixel.
double opaque(VipsBandFormat stored) {
    switch (stored) {
    case VIPS_FORMAT_USHORT:
        return 65535;
    case VIPS_FORMAT_FLOAT:
    case VIPS_FORMAT_DOUBLE:
        return 1;
    default:
        return 255;
    }
}

/// Every operation costs a small photo as much as its pixels, so those without effect are left out here and
/// below.
ImageReference bands(ImageReference image, int first, int count) {
    if (first == 0 && count == image->Bands) return image;
    return runVips(
        [&](VipsImage** out) { return vips_extract_band(image.get(), out, first, "n", count, nullptr); });
}

ImageReference cast(ImageReference image, VipsBandFormat format) {
    if (image->BandFmt == format) return image;
    return runVips([&](VipsImage** out) { return vips_cast(image.get(), out, format, nullptr); });
}

/// The same image once more, for a second way through the operations.
ImageReference shared(const ImageReference& image) {
    g_object_ref(image.get());
    return ImageReference(image.get());
}

/// Shrinks in the picture's own space, weighting colours by their alpha.
ImageReference resize(ImageReference image, int width, int height, Alpha alpha, Quality quality) {
    const bool resized = image->Xsize != width || image->Ysize != height;
    const double most = opaque(image->BandFmt);
    if (alpha == Alpha::straight && resized)
        image = runVips(
            [&](VipsImage** out) { return vips_premultiply(image.get(), out, "max_alpha", most, nullptr); });
    if (resized)
        image = runVips([&](VipsImage** out) {
            return vips_resize(image.get(), out, static_cast<double>(width) / image->Xsize, "vscale",
                               static_cast<double>(height) / image->Ysize, "kernel",
                               quality == Quality::fine ? VIPS_KERNEL_LANCZOS3 : VIPS_KERNEL_CUBIC, nullptr);
        });
    if (alpha == Alpha::premultiplied || (alpha == Alpha::straight && resized))
        image = runVips([&](VipsImage** out) {
            return vips_unpremultiply(image.get(), out, "max_alpha", most, nullptr);
        });
    return image;
}

/// What brings the finished bitmap to sRGB, where the picture has the usual samples and a profile for them.
/// The few pixels of the result pass through it, and one that was made for another photo will do.
std::shared_ptr<const ColourProfile> profileOf(const VipsImage* image) {
    const void* bytes = nullptr;
    std::size_t size = 0;
    if (image->BandFmt != VIPS_FORMAT_UCHAR || image->Type != VIPS_INTERPRETATION_sRGB ||
        vips_image_get_typeof(image, VIPS_META_ICC_NAME) == 0 ||
        vips_image_get_blob(image, VIPS_META_ICC_NAME, &bytes, &size) != 0)
        return nullptr;
    return ColourProfile::find({static_cast<const std::uint8_t*>(bytes), size});
}

/// Colour without alpha to 8-bit sRGB, but for what `profileOf` leaves to do at the end, and through the
/// embedded profile where that one can be used.
ImageReference toSRGB(ImageReference colour, VipsBandFormat stored) {
    // Resampling with alpha leaves floats; profiles want the stored integers back.
    auto image = cast(std::move(colour), stored);
    if (image->Type == VIPS_INTERPRETATION_sRGB && image->BandFmt == VIPS_FORMAT_UCHAR) return image;
    if (vips_image_get_typeof(image.get(), VIPS_META_ICC_NAME) != 0 &&
        (stored == VIPS_FORMAT_UCHAR || stored == VIPS_FORMAT_USHORT)) {
        VipsImage* managed = nullptr;
        if (vips_icc_transform(image.get(), &managed, "srgb", "embedded", TRUE, "intent",
                               VIPS_INTENT_RELATIVE, "black_point_compensation", TRUE, nullptr) == 0)
            return ImageReference(managed);
        vips_error_clear(); // A damaged or foreign profile: the samples are taken for the usual ones.
    }
    if (image->Bands == 1 && (stored == VIPS_FORMAT_FLOAT || stored == VIPS_FORMAT_DOUBLE)) {
        // Floats run from 0 to 1 and are linear, as with the colour pictures of the same programs.
        VipsImage* same[] = {image.get(), image.get(), image.get()};
        image = runVips([&](VipsImage** out) { return vips_bandjoin(same, out, 3, nullptr); });
        image = runVips([&](VipsImage** out) {
            return vips_copy(image.get(), out, "interpretation", VIPS_INTERPRETATION_scRGB, nullptr);
        });
    }
    return runVips([&](VipsImage** out) {
        return vips_colourspace(image.get(), out, VIPS_INTERPRETATION_sRGB, nullptr);
    });
}

/// Three bands of colour in 8-bit sRGB, with a fourth where there is an alpha.
ImageReference toSRGBWithAlpha(const ImageReference& image, VipsBandFormat stored) {
    const int colours = colourBands(image.get());
    auto rgb = toSRGB(bands(shared(image), 0, colours), stored);
    if (rgb->Bands < 3) {
        VipsImage* same[] = {rgb.get(), rgb.get(), rgb.get()};
        rgb = runVips([&](VipsImage** out) { return vips_bandjoin(same, out, 3, nullptr); });
    }
    if (image->Bands > colours) {
        auto alpha = bands(shared(image), colours, 1);
        // Half a step on top, because the cast below cuts off.
        alpha = runVips([&](VipsImage** out) {
            return vips_linear1(alpha.get(), out, 255 / opaque(stored), stored == VIPS_FORMAT_UCHAR ? 0 : 0.5,
                                nullptr);
        });
        rgb = runVips([&](VipsImage** out) { return vips_bandjoin2(rgb.get(), alpha.get(), out, nullptr); });
    }
    return cast(std::move(rgb), VIPS_FORMAT_UCHAR);
}

/// Evaluates an image of three or four bands on the calling thread, strip by strip from the top, as
/// sequential sources need it.
Bitmap evaluate(VipsImage* image, const std::stop_token& stop) {
    constexpr int stripRows = 64;
    Bitmap bitmap(image->Xsize, image->Ysize);
    const Reference<VipsRegion> region(vips_region_new(image));
    for (int top = 0; top < bitmap.height(); top += stripRows) {
        tasks::checkCancelled(stop);
        const VipsRect strip{0, top, bitmap.width(), std::min(stripRows, bitmap.height() - top)};
        if (vips_region_prepare(region.get(), &strip) != 0) {
            vips_error_clear();
            tasks::checkCancelled(stop);
            throw ImageError(damagedPicture);
        }
        for (int y = top; y < top + strip.height; ++y) {
            const VipsPel* from = VIPS_REGION_ADDR(region.get(), 0, y);
            const auto row = bitmap.row(y);
            if (image->Bands == 4) {
                std::copy_n(from, row.size(), row.data());
                continue;
            }
            for (auto* to = row.data(); to < row.data() + row.size(); from += 3) {
                for (int band = 0; band < 3; ++band) *to++ = from[band];
                *to++ = 255;
            }
        }
    }
    return bitmap;
}

} // namespace

void checkDecodable(std::int64_t width, std::int64_t height) {
    if (width < 1 || height < 1) throw ImageError("The photo has no size.");
    if (width > maxDecodedSide || height > maxDecodedSide || width * height > maxDecodedPixels)
        throw ImageError("The photo is larger than 500 megapixels or 65,535 pixels on a side.");
}

double scaleToFit(std::int64_t width, std::int64_t height, int maxSide) {
    return std::min(1.0, static_cast<double>(maxSide) / static_cast<double>(std::max(width, height)));
}

Bitmap renderPicture(Picture picture, const WantedSize& wanted, const std::stop_token& stop) {
    checkDecodable(picture.fullWidth, picture.fullHeight);
    const double scale = scaleToFit(picture.fullWidth, picture.fullHeight, wanted.maxSide);
    const auto target = [scale](std::int64_t side) {
        return std::max(1, static_cast<int>(std::lround(static_cast<double>(side) * scale)));
    };
    VipsImage* source = picture.image.get();
    const std::stop_callback kill(stop, [source] { vips_image_set_kill(source, TRUE); });
    const VipsBandFormat stored = source->BandFmt;
    const auto profile = profileOf(source);
    const int colours = colourBands(source);
    const Alpha alpha = source->Bands > colours ? picture.alpha : Alpha::none;
    auto image = bands(shared(picture.image), 0, colours + (alpha == Alpha::none ? 0 : 1));
    image = resize(std::move(image), target(picture.fullWidth), target(picture.fullHeight), alpha,
                   wanted.quality);
    image = toSRGBWithAlpha(image, stored);
    auto bitmap = evaluate(image.get(), stop);
    if (profile) profile->toSRGB(bitmap);
    return turnUpright(std::move(bitmap), picture.orientation);
}

} // namespace lumisort::images
