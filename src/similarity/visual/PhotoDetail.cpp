#include "similarity/visual/PhotoDetail.h"

#include "similarity/featureprint/AreaFilter.h"

#include <array>
#include <cmath>

namespace lumisort::similarity {

double photoDetail(const images::Bitmap& photo) {
    constexpr int side = 32;
    constexpr std::size_t pixels = side * side;
    std::array<float, 3 * pixels> rgb{};
    AreaFilter().shrink(photo, side, side, rgb);

    double sum = 0, squares = 0; // of whole numbers, hence exact
    for (std::size_t i = 0; i < rgb.size(); i += 3) {
        // The luma of ITU-R BT.601.
        const double grey =
            std::round(0.299 * static_cast<double>(rgb[i]) + 0.587 * static_cast<double>(rgb[i + 1]) +
                       0.114 * static_cast<double>(rgb[i + 2]));
        sum += grey;
        squares += grey * grey;
    }
    const double mean = sum / pixels;
    return std::sqrt(squares / pixels - mean * mean) / 255;
}

} // namespace lumisort::similarity
