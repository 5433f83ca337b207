#include "film/render/DisplayCodes.h"

#include "film/render/Pipeline.h"

#include <display_codes.h>

#include <algorithm>

namespace lumisort::film {

namespace {

/// Codes of some rows, interleaved, each row padded to whole vectors; they last until the thread's next call.
struct PaddedCodes {
    const std::uint16_t* data;
    std::ptrdiff_t stride;
};

PaddedCodes codesOf(const PlaneView& light, float largest) {
    thread_local std::vector<std::uint16_t> memory;
    const int columns = (light.region.width + 7) / 8 * 8;
    const std::ptrdiff_t stride = 4 * static_cast<std::ptrdiff_t>(columns);
    memory.resize(std::max(memory.size(), static_cast<std::size_t>(stride * light.region.height)));
    const halide_dimension_t shape[] = {{0, 4, 1},
                                        {light.region.x, columns, 4},
                                        {light.region.y, light.region.height, static_cast<int>(stride)}};
    Halide::Runtime::Buffer<std::uint16_t> codes(memory.data(), 3, shape);
    auto planes = inputBuffer(light);
    checkPipeline(::display_codes(planes, largest, codes));
    return {memory.data(), stride};
}

} // namespace

void encode(const PlaneView& light, CodeRows& rows) {
    const auto& region = light.region;
    const auto codes = codesOf(light, 65'535);
    for (int y = 0; y < region.height; ++y) {
        const auto at = static_cast<std::ptrdiff_t>(region.y + y - rows.firstRow) * rows.width + region.x;
        std::copy_n(codes.data + y * codes.stride, 4 * region.width, rows.rgba.data() + 4 * at);
    }
}

images::Bitmap displayBitmap(const images::LinearImage& light) {
    constexpr int rowsAtOnce = 16;
    images::Bitmap bitmap(light.width(), light.height());
    Planes planes;
    for (int y = 0; y < light.height(); y += rowsAtOnce) {
        const Rectangle rows{0, y, light.width(), std::min(rowsAtOnce, light.height() - y)};
        planes.reshape(rows);
        for (int c = 0; c < 3; ++c)
            for (int row = y; row < rows.bottom(); ++row)
                std::copy_n(light.plane(c).row(row), light.width(), planes.row(c, row));
        const auto codes = codesOf(planes.view(), 255);
        for (int row = 0; row < rows.height; ++row)
            std::transform(codes.data + row * codes.stride,
                           codes.data + row * codes.stride + 4 * light.width(),
                           bitmap.row(y + row).data(),
                           [](std::uint16_t code) { return static_cast<std::uint8_t>(code); });
    }
    return bitmap;
}

} // namespace lumisort::film
