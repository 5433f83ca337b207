#include "film/render/Planes.h"

#include <algorithm>

namespace lumisort::film {

void copyRegion(const PlaneView& in, const PlaneView& out) {
    const auto& region = out.region;
    for (int c = 0; c < 3; ++c)
        for (int y = region.y; y < region.bottom(); ++y)
            std::copy_n(in.row(c, y) + (region.x - in.region.x), region.width, out.row(c, y));
}

void copyRegion(const PlaneView& in, images::LinearImage& picture) {
    const auto& region = in.region;
    for (int c = 0; c < 3; ++c)
        for (int y = region.y; y < region.bottom(); ++y)
            std::copy_n(in.row(c, y), region.width, picture.plane(c).row(y) + region.x);
}

void Planes::reshape(const Rectangle& region) {
    const std::ptrdiff_t stride = (region.width + 15) / 16 * 16 + PlaneView::columnSlack;
    const std::ptrdiff_t planeStride = stride * (region.height + PlaneView::rowSlack);
    const auto floats = static_cast<std::size_t>(3 * planeStride);
    if (memory_.size() < floats) {
        memory_.clear(); // what is not kept need not be copied
        memory_.resize(floats);
    }
    view_ = {memory_.data(), region, stride, planeStride};
}

} // namespace lumisort::film
