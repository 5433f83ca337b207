#pragma once

#include "platform/images/View.h"

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace lumisort::images {

/// An owning, move-only image of three float planes, red, green and blue, rows from the top. Values are
/// scene-linear light in the primaries of sRGB (ITU-R BT.709) with its white point D65: 1 is the white of the
/// photo, brighter light is above it, and colours outside of the primaries' triangle have negative
/// components.
class LinearImage {
public:
    LinearImage() = default;
    /// Samples are uninitialised. Throws std::bad_alloc.
    LinearImage(int width, int height)
        : width_(width), height_(height), stride_((width + alignment - 1) / alignment * alignment),
          samples_(static_cast<float*>(std::aligned_alloc(
              alignment * sizeof(float), static_cast<std::size_t>(3 * planeStride()) * sizeof(float)))) {
        if (!samples_) throw std::bad_alloc();
    }

    int width() const { return width_; }
    int height() const { return height_; }
    /// Samples from one row to the next: a multiple of 64 bytes, as the address of the first row is.
    std::ptrdiff_t stride() const { return stride_; }
    /// Samples from one plane to the next.
    std::ptrdiff_t planeStride() const { return stride_ * height_; }

    View<float> plane(int channel) {
        return {samples_.get() + channel * planeStride(), width_, height_, stride_};
    }
    View<const float> plane(int channel) const {
        return {samples_.get() + channel * planeStride(), width_, height_, stride_};
    }

private:
    struct Free {
        void operator()(float* samples) const { std::free(samples); }
    };
    static constexpr std::ptrdiff_t alignment = 16;

    int width_ = 0;
    int height_ = 0;
    std::ptrdiff_t stride_ = 0;
    std::unique_ptr<float, Free> samples_;
};

} // namespace lumisort::images
