#include "similarity/featureprint/AreaFilter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "similarity/featureprint/AreaFilter.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumisort::similarity::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;
using Cover = AreaFilter::Cover;

/// sums[i] = the lengths of the rows times their i-th bytes: at most 255 · 65,535, which a float holds
/// exactly.
void SumRows(const std::uint8_t* bytes, std::size_t rowBytes, const Cover& rows, std::uint32_t wholeLength,
             float* HWY_RESTRICT sums) {
    const auto sumFrom = [&](auto tag, std::size_t i) HWY_ATTR {
        const hn::Rebind<std::uint8_t, decltype(tag)> byteTag;
        const hn::Rebind<std::int32_t, decltype(tag)> signedTag;
        const auto row = [&](std::int64_t y) HWY_ATTR {
            return hn::PromoteTo(tag, hn::LoadU(byteTag, bytes + y * rowBytes + i));
        };
        auto whole = hn::Zero(tag);
        for (std::int64_t y = rows.first + 1; y < rows.last; ++y) whole = hn::Add(whole, row(y));
        auto sum = hn::Mul(whole, hn::Set(tag, wholeLength));
        sum = hn::Add(sum,
                      hn::Mul(row(rows.first), hn::Set(tag, static_cast<std::uint32_t>(rows.firstLength))));
        sum =
            hn::Add(sum, hn::Mul(row(rows.last), hn::Set(tag, static_cast<std::uint32_t>(rows.lastLength))));
        const hn::Rebind<float, decltype(tag)> floatTag;
        hn::StoreU(hn::ConvertTo(floatTag, hn::BitCast(signedTag, sum)), floatTag, sums + i);
    };
    const hn::ScalableTag<std::uint32_t> wide;
    const hn::CappedTag<std::uint32_t, 4> pixel; // rows are whole pixels of four bytes
    std::size_t i = 0;
    for (; i + hn::Lanes(wide) <= rowBytes; i += hn::Lanes(wide)) sumFrom(wide, i);
    for (; i < rowBytes; i += hn::Lanes(pixel)) sumFrom(pixel, i);
}

/// Sums along the columns; a pixel's four channels are one vector where the machine has vectors.
void SumColumns(const float* sums, std::span<const Cover> columns, float wholeLength, float scale,
                float* result) {
    const hn::CappedTag<float, 4> tag;
    for (const Cover& cover : columns) {
        float channels[4];
        for (std::size_t c = 0; c < 4; c += hn::Lanes(tag)) {
            const auto pixel = [&](std::int64_t x) HWY_ATTR { return hn::LoadU(tag, sums + 4 * x + c); };
            auto whole = hn::Zero(tag);
            for (std::int64_t x = cover.first + 1; x < cover.last; ++x) whole = hn::Add(whole, pixel(x));
            auto sum = hn::Mul(whole, hn::Set(tag, wholeLength));
            sum = hn::MulAdd(pixel(cover.first), hn::Set(tag, static_cast<float>(cover.firstLength)), sum);
            sum = hn::MulAdd(pixel(cover.last), hn::Set(tag, static_cast<float>(cover.lastLength)), sum);
            hn::StoreU(hn::Mul(sum, hn::Set(tag, scale)), tag, channels + c);
        }
        result = std::copy_n(channels, 3, result);
    }
}

} // namespace lumisort::similarity::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumisort::similarity {

HWY_EXPORT(SumRows);
HWY_EXPORT(SumColumns);

namespace {

AreaFilter::Cover coverOf(std::int64_t target, std::int64_t targets, std::int64_t sources) {
    const std::int64_t begin = target * sources, end = begin + sources;
    const std::int64_t first = begin / targets, last = (end - 1) / targets;
    return {first, last, std::min(end, (first + 1) * targets) - begin,
            first == last ? 0 : end - last * targets};
}

bool isOpaque(std::span<const std::uint8_t> rgba) {
    std::uint64_t alphas = ~std::uint64_t{0}; // of two pixels at once
    std::size_t i = 0;
    for (; i + 8 <= rgba.size(); i += 8) {
        std::uint64_t pixels;
        std::memcpy(&pixels, rgba.data() + i, 8);
        alphas &= pixels;
    }
    std::array<std::uint8_t, 8> bytes = std::bit_cast<std::array<std::uint8_t, 8>>(alphas);
    if (i < rgba.size()) bytes[3] &= rgba[i + 3];
    return (bytes[3] & bytes[7]) == 255;
}

void layOverWhite(std::span<const std::uint8_t> rgba, std::span<std::uint8_t> result) {
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        const int alpha = rgba[i + 3];
        for (std::size_t c = 0; c < 3; ++c)
            result[i + c] =
                static_cast<std::uint8_t>((rgba[i + c] * alpha + 255 * (255 - alpha) + 127) / 255);
    }
}

} // namespace

AreaFilter::AreaFilter() {
    sums_.reserve(std::size_t{4} * reservedWidth);
    columns_.reserve(reservedWidth);
}

void AreaFilter::shrink(const images::Bitmap& source, int width, int height, std::span<float> result) {
    std::span<const std::uint8_t> bytes = source.rgba();
    if (!isOpaque(bytes)) {
        opaque_.resize(bytes.size());
        layOverWhite(bytes, opaque_);
        bytes = opaque_;
    }
    const std::size_t rowBytes = std::size_t{4} * source.width();
    sums_.resize(rowBytes);
    columns_.clear();
    for (int x = 0; x < width; ++x) columns_.push_back(coverOf(x, width, source.width()));
    const double area = static_cast<double>(source.width()) * source.height(); // of a pixel of the result
    for (int y = 0; y < height; ++y) {
        const AreaFilter::Cover rows = coverOf(y, height, source.height());
        HWY_DYNAMIC_DISPATCH(SumRows)(bytes.data(), rowBytes, rows, static_cast<std::uint32_t>(height),
                                      sums_.data());
        HWY_DYNAMIC_DISPATCH(SumColumns)(sums_.data(), columns_, static_cast<float>(width),
                                         static_cast<float>(1 / area),
                                         result.data() + std::size_t{3} * width * y);
    }
}

} // namespace lumisort::similarity
#endif
