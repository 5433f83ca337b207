#include "film/editor/Adjustment.h"

#include "film/editor/DraftSize.h"
#include "film/editor/ToneHistogram.h"

#include <gtest/gtest.h>

namespace lumisort::film {
namespace {

TEST(Adjustment, WritesAndReadsValues) {
    const auto &exposure = adjustments[0], &grain = adjustments[3];
    EXPECT_EQ(exposure.text(0.35), "+0.35 EV");
    EXPECT_EQ(exposure.text(-1.2), "-1.20 EV");
    EXPECT_EQ(grain.text(0.35), "35%");
    struct Case {
        const Adjustment& adjustment;
        const char* typed;
        std::optional<double> value;
    };
    for (const auto& [adjustment, typed, value] :
         {Case{exposure, "+0.35 EV", 0.35}, Case{exposure, "0.36", 0.35}, Case{exposure, " -9 ", -3.0},
          Case{exposure, "1 %", {}}, Case{exposure, "", {}}, Case{exposure, "nan", {}},
          Case{grain, "35%", 0.35}, Case{grain, "7", 0.07}, Case{grain, "250", 1.0}, Case{grain, "x", {}}})
        EXPECT_EQ(adjustment.parse(typed), value) << typed;
    for (const auto& adjustment : adjustments)
        for (double value = adjustment.from; value <= adjustment.to; value += adjustment.step)
            EXPECT_EQ(adjustment.parse(adjustment.text(adjustment.snapped(value))), adjustment.snapped(value))
                << adjustment.title << ' ' << value;
}

TEST(DraftSize, FindsTheSizeThatTakesTheTimeAimedAt) {
    DraftSize size;
    const double nanosecondsPerPixel = 100; // of a slow machine
    double took = 0;
    for (int i = 0; i < 20; ++i) {
        const double pixels = size.longEdge() * size.longEdge() * 2.0 / 3;
        took = pixels * nanosecondsPerPixel / 1e6;
        size.took(size.longEdge(), took);
    }
    EXPECT_NEAR(took, DraftSize::goalMilliseconds, 1);
    for (int i = 0; i < 20; ++i) size.took(size.longEdge(), 10'000);
    EXPECT_EQ(size.longEdge(), DraftSize::least);
    for (int i = 0; i < 20; ++i) size.took(size.longEdge(), 0);
    EXPECT_EQ(size.longEdge(), DraftSize::most);
}

TEST(ToneHistogram, CountsChannelsAndWhatIsClipped) {
    QImage picture(4, 1, QImage::Format_RGBX8888);
    picture.setPixelColor(0, 0, QColor(0, 10, 10));
    picture.setPixelColor(1, 0, QColor(255, 255, 255));
    picture.setPixelColor(2, 0, QColor(10, 10, 10));
    picture.setPixelColor(3, 0, QColor(10, 10, 255));
    const auto histogram = ToneHistogram::of(picture);
    EXPECT_EQ(histogram.red[10], 2u);
    EXPECT_EQ(histogram.green[10], 3u);
    EXPECT_EQ(histogram.luminance[255], 1u);
    EXPECT_EQ(histogram.clippedShadows, 0.25);
    EXPECT_EQ(histogram.clippedHighlights, 0.5);
    EXPECT_EQ(ToneHistogram::of(QImage()).clippedShadows, 0);
}

} // namespace
} // namespace lumisort::film
