#include "film/editor/ToneHistogram.h"

namespace lumisort::film {

ToneHistogram ToneHistogram::of(const QImage& picture) {
    ToneHistogram histogram;
    const auto pixels = picture.convertToFormat(QImage::Format_RGBX8888);
    std::uint64_t shadows = 0, highlights = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* row = pixels.constScanLine(y);
        for (int x = 0; x < pixels.width(); ++x, row += 4) {
            const unsigned red = row[0], green = row[1], blue = row[2];
            ++histogram.red[red];
            ++histogram.green[green];
            ++histogram.blue[blue];
            // 54 + 183 + 19 = 256: the weights 0.2126, 0.7152 and 0.0722 to a part in 256.
            ++histogram.luminance[(54 * red + 183 * green + 19 * blue) >> 8];
            shadows += red == 0 || green == 0 || blue == 0;
            highlights += red == 255 || green == 255 || blue == 255;
        }
    }
    if (const auto count = static_cast<double>(pixels.width()) * pixels.height(); count > 0) {
        histogram.clippedShadows = static_cast<double>(shadows) / count;
        histogram.clippedHighlights = static_cast<double>(highlights) / count;
    }
    return histogram;
}

} // namespace lumisort::film
