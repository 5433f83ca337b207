#include "Pictures.h"

#include "platform/images/decoding/DecoderSetup.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace lumisort::test {

using images::Bitmap;
using images::ImageReference;
using images::runVips;

ImageReference asymmetricPicture(int width, int height) {
    images::initialiseDecoder();
    images::decoding::start({});
    std::vector<std::uint8_t> samples;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const bool corner = x < width / 4 && y < height / 4;
            const int red = corner ? 250 : 40 + 150 * x / width, green = corner ? 250 : 30 + 120 * y / height;
            for (const int sample : {red, green, corner ? 250 : 60})
                samples.push_back(static_cast<std::uint8_t>(sample));
        }
    return runVips([&](VipsImage** out) {
        *out = vips_image_new_from_memory_copy(samples.data(), samples.size(), width, height, 3,
                                               VIPS_FORMAT_UCHAR);
        (*out)->Type = VIPS_INTERPRETATION_sRGB;
        return 0;
    });
}

ImageReference flatPicture(int width, int height, const std::vector<double>& samples, VipsBandFormat format,
                           VipsInterpretation interpretation) {
    images::initialiseDecoder();
    images::decoding::start({});
    const auto black = runVips([&](VipsImage** out) {
        return vips_black(out, width, height, "bands", static_cast<int>(samples.size()), nullptr);
    });
    const std::vector<double> ones(samples.size(), 1);
    const auto flat = runVips([&](VipsImage** out) {
        return vips_linear(black.get(), out, ones.data(), samples.data(), static_cast<int>(samples.size()),
                           nullptr);
    });
    const auto cast = runVips([&](VipsImage** out) { return vips_cast(flat.get(), out, format, nullptr); });
    return runVips([&](VipsImage** out) {
        return vips_copy(cast.get(), out, "interpretation", interpretation, nullptr);
    });
}

files::FileUrl save(VipsImage* image, const TemporaryFolder& folder, const std::string& name) {
    if (vips_image_write_to_file(image, (folder.path() / name).c_str(), nullptr) != 0)
        throw std::runtime_error(std::string("cannot write ") + name + ": " + vips_error_buffer());
    return folder.url().child(name.substr(0, name.find('[')));
}

files::FileUrl saveTagged(VipsImage* image, int orientation, const TemporaryFolder& folder,
                          const std::string& ending) {
    const auto tagged = runVips([&](VipsImage** out) { return vips_copy(image, out, nullptr); });
    vips_image_set_int(tagged.get(), VIPS_META_ORIENTATION, orientation);
    vips_image_set_string(tagged.get(), "exif-ifd2-DateTimeOriginal", "2021:07:04 18:30:00");
    const std::string name = "tagged-" + std::to_string(orientation);
    // The JPEG writer alone makes an EXIF block from fields; PNG takes one over.
    const auto jpeg = save(tagged.get(), folder, name + "-first.jpg[Q=95]");
    const auto reread =
        runVips([&](VipsImage** out) { return vips_jpegload(jpeg.path().c_str(), out, nullptr); });
    return save(reread.get(), folder, name + ending);
}

std::string contents(const files::FileUrl& url) {
    std::ifstream file(url.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Bitmap bitmapOf(VipsImage* image) {
    const auto rgba =
        runVips([&](VipsImage** out) { return vips_bandjoin_const1(image, out, 255, nullptr); });
    std::size_t size = 0;
    auto* bytes = static_cast<std::uint8_t*>(vips_image_write_to_memory(rgba.get(), &size));
    Bitmap bitmap(image->Xsize, image->Ysize, std::span(bytes, size));
    g_free(bytes);
    return bitmap;
}

double difference(const Bitmap& a, const Bitmap& b) {
    if (a.width() != b.width() || a.height() != b.height()) return 1000;
    double sum = 0;
    for (std::size_t i = 0; i < a.rgba().size(); ++i) sum += std::abs(int{a.rgba()[i]} - int{b.rgba()[i]});
    return sum / static_cast<double>(a.rgba().size());
}

Rgba pixel(const Bitmap& bitmap, int x, int y) {
    const auto* p = &bitmap.rgba()[4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap.width()) +
                                      static_cast<std::size_t>(x))];
    return {p[0], p[1], p[2], p[3]};
}

} // namespace lumisort::test
