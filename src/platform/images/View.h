#pragma once

#include <cstddef>

namespace lumisort::images {

/// A non-owning view of one plane of samples. Row `y` starts at data + y · stride.
template <class Sample>
struct View {
    Sample* data = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0; ///< samples from one row to the next

    Sample* row(int y) const { return data + y * stride; }
    Sample& at(int x, int y) const { return row(y)[x]; }
    /// The part of `w` × `h` samples whose top left one is (x, y); it must lie inside.
    View crop(int x, int y, int w, int h) const { return {row(y) + x, w, h, stride}; }
    operator View<const Sample>() const { return {data, width, height, stride}; }
};

} // namespace lumisort::images
