#include "film/render/Planes.h"

namespace lumisort::film {

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
