#include "similarity/featureprint/Network.h"

#include "Reference.h"
#include "similarity/featureprint/FeaturePrintModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#ifdef LUMISORT_OPENCV_DNN
#include "support/TemporaryFolder.h"

#include <opencv2/dnn.hpp>
#endif

using namespace lumisort;
using namespace lumisort::similarity;

namespace {

double distanceBetween(const FeaturePrint& print, const std::vector<double>& expected) {
    double squares = 0;
    for (std::size_t i = 0; i < featurePrintLength; ++i)
        squares += std::pow(print.values[i] - expected[i], 2);
    return std::sqrt(squares);
}

} // namespace

// A sum of up to 576 products in floats is off by about sqrt(576) · 2^-24 = 1.4e-6 of its size. 39 layers of
// that, independent of each other, make 9e-6 for a value of the last map, of the size of the map's largest
// values. A print averages 49 of them per number, so the same bound holds for it as a whole.
TEST(Network, AgreesWithTheLiteralNetwork) {
    const Weights weights = readWeights(FeaturePrintModel::defaultWeights());
    const images::Bitmap picture = test::picture(301, 200, 1);
    const reference::Map input = reference::input(picture);
    const reference::Map expected = reference::run(weights, input);
    const double largest =
        std::ranges::max(expected.values, {}, [](double value) { return std::abs(value); });
    const auto expectedPrint = reference::print(expected);

    test::forEachTarget([&](const char* target) {
        SCOPED_TRACE(target);
        NetworkBuffers buffers;
        std::ranges::copy(input.values, buffers.picture.get());
        const std::span<const float> map = Network(weights).run(buffers);
        double worst = 0;
        for (std::size_t i = 0; i < map.size(); ++i)
            worst = std::max(worst, std::abs(map[i] - expected.values[i]));
        EXPECT_LE(worst, 9e-6 * largest);

        const FeaturePrintModel model;
        FeaturePrintModel::Scratch scratch;
        EXPECT_LE(distanceBetween(model.print(picture, scratch), expectedPrint), 9e-6);
    });
}

TEST(Network, AgreesWithOpenCv) {
#ifndef LUMISORT_OPENCV_DNN
    GTEST_SKIP() << "libopencv-dnn-dev was not installed when this was built";
#else
    LUMISORT_NEEDS_CORPUS();
    const auto file = test::corpus()->parent_path() / "models" / "backbone_block12_224.onnx";
    if (!exists(file)) GTEST_SKIP() << "no model in ONNX form beside the real photos";
    cv::setNumThreads(1);
    cv::dnn::Net peer = cv::dnn::readNetFromONNX(file.string());
    const FeaturePrintModel model;
    FeaturePrintModel::Scratch scratch;
    for (const unsigned seed : {1U, 2U, 3U}) {
        const images::Bitmap picture = test::picture(1024, 683, seed);
        const reference::Map input = reference::input(picture);
        cv::Mat blob({1, 3, 224, 224}, CV_32F);
        for (int i = 0; i < 3 * 224 * 224; ++i)
            blob.ptr<float>()[i] = static_cast<float>(input.values[i % (224 * 224) * 3 + i / (224 * 224)]);
        peer.setInput(blob);
        const cv::Mat out = peer.forward();
        reference::Map last{14, 96, std::vector<double>(14 * 14 * 96)};
        for (int i = 0; i < 14 * 14 * 96; ++i)
            last.values[i % (14 * 14) * 96 + i / (14 * 14)] = out.ptr<float>()[i];
        // Twice the bound above: the peer computes in floats too.
        EXPECT_LE(distanceBetween(model.print(picture, scratch), reference::print(last)), 2 * 9e-6);
    }
#endif
}
