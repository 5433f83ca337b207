#pragma once

#include "film/render/Rectangle.h"
#include "platform/images/LinearImage.h"

#include <cstddef>
#include <vector>

namespace lumisort::film {

/// A non-owning view of three planes of 32-bit floats (channels or layers in the order red, green, blue) that
/// cover `region` of a picture. Vectors and blocks run past a region's right and lower edge: behind each row
/// lie at least `columnSlack` more floats, and below the last row `rowSlack` more rows, of undefined value.
struct PlaneView {
    static constexpr int columnSlack = 64;
    static constexpr int rowSlack = 4;

    float* data = nullptr; ///< of the first plane, at the region's first pixel
    Rectangle region;
    std::ptrdiff_t stride = 0;      ///< floats from one row to the next
    std::ptrdiff_t planeStride = 0; ///< floats from one plane to the next

    /// The row `y` of the picture, from the region's first column.
    float* row(int channel, int y) const { return data + channel * planeStride + (y - region.y) * stride; }

    /// The part of this view that covers `inner`, which lies inside its region.
    PlaneView part(const Rectangle& inner) const {
        return {row(0, inner.y) + (inner.x - region.x), inner, stride, planeStride};
    }
};

/// Copies the region that `out` covers, which lies inside that of `in`.
void copyRegion(const PlaneView& in, const PlaneView& out);
/// Copies all of `in` into the part of a whole picture that it covers.
void copyRegion(const PlaneView& in, images::LinearImage& picture);

/// Three planes of 32-bit floats that cover a region of a picture, in memory of their own. Only moves.
class Planes {
public:
    Planes() = default;
    explicit Planes(const Rectangle& region) { reshape(region); }
    Planes(Planes&&) = default;
    Planes& operator=(Planes&&) = default;

    /// Covers another region from now on; the pixels are undefined. Memory is kept for the largest so far.
    void reshape(const Rectangle& region);

    const Rectangle& region() const { return view_.region; }
    const PlaneView& view() const { return view_; }
    float* row(int channel, int y) { return view_.row(channel, y); }
    const float* row(int channel, int y) const { return view_.row(channel, y); }

private:
    std::vector<float> memory_;
    PlaneView view_;
};

} // namespace lumisort::film
