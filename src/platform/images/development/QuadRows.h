#pragma once

#include "platform/images/development/Highlights.h"
#include "platform/images/development/Mosaic.h"

#include <memory>
#include <optional>
#include <stop_token>

namespace lumisort::images {

/// White-balanced rows of a mosaic, one plane for each of the four sites of a quad (top left, top right,
/// bottom left, bottom right), with saturated samples estimated. The mosaic is mirrored beyond its borders.
class QuadRows {
public:
    QuadRows(int columns, int rows);

    /// Reads the quads whose first one's top left sample is (x, y), which may lie outside of the mosaic. No
    /// estimates without `highlights`.
    void read(const Mosaic& mosaic, const Highlights* highlights, int x, int y);

    View<const float> plane(int site) const { return {at(site), columns_, rows_, columns_}; }
    float* data() { return samples_.get(); }
    int columns() const { return columns_; }
    int rows() const { return rows_; }

private:
    float* at(int site) const {
        return samples_.get() + static_cast<std::ptrdiff_t>(site) * columns_ * rows_;
    }
    void readLine(const Mosaic& mosaic, const Highlights* highlights, int x, int y, float* out) const;

    int columns_, rows_;
    std::unique_ptr<float[]> samples_;
};

/// Finds the colours of a mosaic's saturated light; none where nothing is saturated. Throws tasks::Cancelled.
std::optional<Highlights> findHighlights(const Mosaic& mosaic, const CameraColour& colour,
                                         const std::stop_token& stop);

} // namespace lumisort::images
