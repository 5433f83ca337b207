#include "film/render/FilmSource.h"

#include "film/render/FilmRenderError.h"
#include "film/render/Reduction.h"
#include "platform/images/Decoder.h"
#include "platform/images/RawExtensions.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>

namespace lumisort::film {

namespace {

void checkSize(std::int64_t width, std::int64_t height) {
    if (width <= 0 || height <= 0) throw FilmRenderError(FilmRenderProblem::unreadable);
    if (width > mostFilmSide || height > mostFilmSide || width * height > mostFilmPixels)
        throw FilmRenderError(FilmRenderProblem::imageTooLarge);
}

/// The light of each 8-bit sRGB code.
std::array<float, 256> lightOfCodes() {
    std::array<float, 256> light{};
    for (std::size_t code = 0; code < light.size(); ++code) {
        const double v = static_cast<double>(code) / 255;
        light[code] = static_cast<float>(v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4));
    }
    return light;
}

images::LinearImage linear(const images::Bitmap& bitmap) {
    static const auto light = lightOfCodes();
    images::LinearImage image(bitmap.width(), bitmap.height());
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < bitmap.height(); ++y) {
            const auto codes = bitmap.row(y);
            float* row = image.plane(c).row(y);
            for (int x = 0; x < bitmap.width(); ++x) row[x] = light[codes[static_cast<std::size_t>(4 * x + c)]];
        }
    return image;
}

FilmSource developed(const files::FileUrl& photo, SourceScale scale, const std::stop_token& stop) {
    try {
        auto raw = images::decoder().develop(
            photo, {.longestSide = scale == SourceScale::preview ? previewSourceSide : 0}, stop);
        checkSize(raw.fullWidth, raw.fullHeight);
        return {std::move(raw.image), raw.fullWidth, raw.fullHeight, true};
    } catch (const images::DevelopmentError& error) {
        throw FilmRenderError(error.reason() == images::DevelopmentError::Reason::unsupported
                                  ? FilmRenderProblem::unsupportedRAW
                                  : FilmRenderProblem::unreadable);
    }
}

FilmSource decoded(const files::FileUrl& photo, const images::ImageProperties& properties, SourceScale scale,
                   const std::stop_token& stop) {
    const int longest = static_cast<int>(std::max(properties.width, properties.height));
    const auto bitmap = images::decoder().thumbnail(
        photo, scale == SourceScale::preview ? std::min(previewSourceSide, longest) : longest,
        images::Quality::fine, stop);
    const bool turned = images::swapsSides(properties.orientation);
    const auto width = static_cast<int>(properties.width), height = static_cast<int>(properties.height);
    return {linear(bitmap), turned ? height : width, turned ? width : height, false};
}

} // namespace

void checkSourceName(const files::FileUrl& photo, FilmInputs inputs) {
    if (inputs == FilmInputs::renderedAsWell) return;
    std::string extension(photo.extension());
    std::ranges::transform(extension, extension.begin(), [](unsigned char c) { return std::tolower(c); });
    if (std::ranges::find(images::rawExtensions, extension) == images::rawExtensions.end())
        throw FilmRenderError(FilmRenderProblem::rawRequired);
}

FilmSource loadSource(const files::FileUrl& photo, SourceScale scale, FilmInputs inputs,
                      const std::stop_token& stop) {
    checkSourceName(photo, inputs);
    try {
        const auto properties = images::decoder().properties(photo);
        const bool isRAW = properties.type == images::ImageType::raw;
        if (!isRAW && inputs == FilmInputs::raw) throw FilmRenderError(FilmRenderProblem::rawRequired);
        checkSize(properties.width, properties.height);
        auto source = isRAW ? developed(photo, scale, stop) : decoded(photo, properties, scale, stop);
        const int longest = std::max(source.image.width(), source.image.height());
        if (scale == SourceScale::preview && longest > previewSourceSide)
            source.image =
                reduced(source.image, previewSourceSide, ReductionFilter::area, onAllProcessors, stop);
        return source;
    } catch (const images::ImageError&) {
        throw FilmRenderError(FilmRenderProblem::unreadable);
    }
}

SourceStamp sourceStamp(files::FileSystem& system, const files::FileUrl& photo) {
    // What a symbolic link points at is what is developed.
    return {photo.path(), system.status(photo.path(), files::Links::follow)};
}

} // namespace lumisort::film
