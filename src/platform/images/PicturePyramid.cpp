#include "platform/images/PicturePyramid.h"

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <utility>

namespace lumisort::images {
namespace {

constexpr std::size_t channels = 4;

bool opaque(const Bitmap& picture) {
    const auto rgba = picture.rgba();
    for (std::size_t at = channels - 1; at < rgba.size(); at += channels)
        if (rgba[at] != 255) return false;
    return true;
}

void premultiply(Bitmap& picture) {
    const auto rgba = picture.rgba();
    for (std::size_t at = 0; at < rgba.size(); at += channels) {
        const int alpha = rgba[at + 3];
        for (std::size_t channel = 0; channel < 3; ++channel)
            rgba[at + channel] = static_cast<std::uint8_t>((rgba[at + channel] * alpha + 127) / 255);
    }
}

/// One row of the half-size picture from the two rows above each other; the last column may stand alone.
void halveRow(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* half, int width) {
    const auto pairs = static_cast<std::size_t>(width / 2);
    for (std::size_t x = 0; x < pairs; ++x)
        for (std::size_t channel = 0; channel < channels; ++channel) {
            const std::size_t left = 2 * channels * x + channel, right = left + channels;
            half[channels * x + channel] =
                static_cast<std::uint8_t>((upper[left] + upper[right] + lower[left] + lower[right] + 2) / 4);
        }
    if (width % 2 != 0)
        for (std::size_t channel = 0; channel < channels; ++channel) {
            const std::size_t last = 2 * channels * pairs + channel;
            half[channels * pairs + channel] = static_cast<std::uint8_t>((upper[last] + lower[last] + 1) / 2);
        }
}

Bitmap halved(const Bitmap& picture) {
    Bitmap half((picture.width() + 1) / 2, (picture.height() + 1) / 2);
    for (int y = 0; y < half.height(); ++y) {
        const int lower = std::min(2 * y + 1, picture.height() - 1);
        halveRow(picture.row(2 * y).data(), picture.row(lower).data(), half.row(y).data(), picture.width());
    }
    return half;
}

} // namespace

PicturePyramid::PicturePyramid(Bitmap picture, const std::stop_token& stop) : isOpaque_(opaque(picture)) {
    if (!isOpaque_) premultiply(picture);
    levels_.push_back(std::move(picture));
    while (std::max(levels_.back().width(), levels_.back().height()) > smallestSide) {
        tasks::checkCancelled(stop);
        levels_.push_back(halved(levels_.back()));
    }
}

std::size_t PicturePyramid::bytes() const {
    std::size_t sum = 0;
    for (const auto& level : levels_) sum += level.rgba().size();
    return sum;
}

std::size_t PicturePyramid::levelFor(double scale) const {
    // Scales come out of divisions: what is meant as exactly one half must count as such.
    constexpr double tolerance = 1 + 1e-6;
    std::size_t level = 0;
    while (level + 1 < levels_.size() && scale * 2 <= tolerance) {
        scale *= 2;
        ++level;
    }
    return level;
}

} // namespace lumisort::images
