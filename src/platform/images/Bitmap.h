#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>

namespace lumisort::images {

/// An owning, move-only 8-bit RGBA image, rows from the top without padding, sRGB, alpha straight.
class Bitmap {
public:
    Bitmap() = default; ///< without pixels
    /// Samples are uninitialised. Throws std::invalid_argument unless both sides are positive, std::bad_alloc.
    Bitmap(int width, int height) : width_(width), height_(height) {
        if (width < 1 || height < 1) throw std::invalid_argument("An image needs a width and a height.");
        samples_ = std::make_unique_for_overwrite<std::uint8_t[]>(byteCount());
    }
    /// A copy of `rgba`, which must have 4 · width · height bytes; throws std::invalid_argument otherwise.
    Bitmap(int width, int height, std::span<const std::uint8_t> rgba) : Bitmap(width, height) {
        if (rgba.size() != byteCount()) throw std::invalid_argument("An image has four bytes a pixel.");
        std::ranges::copy(rgba, samples_.get());
    }
    Bitmap(Bitmap&& other) noexcept { swap(other); }
    Bitmap& operator=(Bitmap&& other) noexcept {
        Bitmap(std::move(other)).swap(*this);
        return *this;
    }
    ~Bitmap() = default;
    Bitmap clone() const { return width_ == 0 ? Bitmap() : Bitmap(width_, height_, rgba()); }

    int width() const { return width_; }
    int height() const { return height_; }
    bool isEmpty() const { return width_ == 0; }
    /// 4 · width · height bytes.
    std::span<std::uint8_t> rgba() { return {samples_.get(), byteCount()}; }
    std::span<const std::uint8_t> rgba() const { return {samples_.get(), byteCount()}; }
    std::span<std::uint8_t> row(int y) { return rgba().subspan(rowBytes() * static_cast<std::size_t>(y), rowBytes()); }
    std::span<const std::uint8_t> row(int y) const {
        return rgba().subspan(rowBytes() * static_cast<std::size_t>(y), rowBytes());
    }

private:
    std::size_t rowBytes() const { return 4 * static_cast<std::size_t>(width_); }
    std::size_t byteCount() const { return rowBytes() * static_cast<std::size_t>(height_); }
    void swap(Bitmap& other) noexcept {
        std::swap(width_, other.width_);
        std::swap(height_, other.height_);
        samples_.swap(other.samples_);
    }

    int width_ = 0;
    int height_ = 0;
    std::unique_ptr<std::uint8_t[]> samples_;
};

} // namespace lumisort::images
