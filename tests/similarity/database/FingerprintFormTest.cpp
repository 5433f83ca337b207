#include "similarity/database/FingerprintForm.h"

#include "similarity/Fingerprinting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace lumisort::similarity {
namespace {

TEST(FingerprintForm, ReturnsTheVeryFingerprint) {
    std::mt19937 random(3);
    for (int round = 0; round < 50; ++round) {
        FingerprintCanvas canvas;
        for (auto& value : canvas.rgb) value = static_cast<std::uint8_t>(random());
        if (round == 0) canvas.rgb.fill(255);
        if (round == 1) canvas.rgb.fill(0);
        const auto made = fingerprint(canvas, 1.5 + round);
        EXPECT_EQ(fingerprintFrom(bytesOf(made)), made);
    }
}

TEST(FingerprintForm, ReturnsTheVeryPrint) {
    FeaturePrint print;
    for (std::size_t i = 0; i < featurePrintLength; ++i)
        print.values[i] = (i % 2 ? 1.0f : -1.0f) / std::sqrt(static_cast<float>(featurePrintLength));
    EXPECT_EQ(featurePrintFrom(bytesOf(print)), print);
}

TEST(FingerprintForm, RefusesWhatIsNone) {
    FeaturePrint print;
    EXPECT_EQ(featurePrintFrom(bytesOf(print)), std::nullopt) << "norm 0";
    print.values[0] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(featurePrintFrom(bytesOf(print)), std::nullopt);
    EXPECT_EQ(featurePrintFrom("short"), std::nullopt);
    EXPECT_EQ(fingerprintFrom(""), std::nullopt);
    EXPECT_EQ(fingerprintFrom(std::string(bytesOf(VisualFingerprint()).size(), '\0')), std::nullopt);
}

} // namespace
} // namespace lumisort::similarity
