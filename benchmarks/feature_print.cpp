// A feature print against the same network under OpenCV DNN (where libopencv-dnn-dev is installed and the
// network is given in ONNX form), and a print from a file against decoding the file and running the network.
//
//   benchmark-feature_print PHOTO [NETWORK.onnx]
//
// Times are processor time of the whole process, the best of several runs in turn, so that a busy machine
// disturbs the ratios little. Everything runs on one thread.

#include "platform/images/Decoder.h"
#include "similarity/featureprint/FeaturePrintModel.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

#ifdef LUMISORT_OPENCV_DNN
#include <opencv2/dnn.hpp>
#endif

namespace {

using namespace lumisort;

struct Work {
    const char* name;
    std::function<void()> run;
    double bestMilliseconds = 1e9;
};

double processorMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
}

void measure(std::vector<Work>& works, int rounds) {
    for (int round = 0; round < rounds; ++round)
        for (Work& work : works) {
            const double start = processorMilliseconds();
            work.run();
            work.bestMilliseconds = std::min(work.bestMilliseconds, processorMilliseconds() - start);
        }
    for (const Work& work : works) std::printf("%-44s %8.2f ms\n", work.name, work.bestMilliseconds);
}

#ifdef LUMISORT_OPENCV_DNN
void compareWithOpenCv(const similarity::FeaturePrintModel& model, const images::Bitmap& frame,
                       const char* onnx) {
    cv::setNumThreads(1);
    cv::dnn::Net peer = cv::dnn::readNetFromONNX(onnx);
    cv::Mat blob({1, 3, frame.height(), frame.width()}, CV_32F);
    const int pixels = frame.width() * frame.height();
    for (int i = 0; i < 3 * pixels; ++i)
        blob.ptr<float>()[i] = static_cast<float>(frame.rgba()[4 * (i % pixels) + i / pixels]) / 127.5F - 1;
    peer.setInput(blob);
    similarity::FeaturePrintModel::Scratch scratch;
    std::vector<Work> works{{"print from a decoded 224 x 224 frame", [&] { model.print(frame, scratch); }},
                            {"the same network under OpenCV DNN", [&] { peer.forward(); }}};
    measure(works, 60);
    std::printf("ratio %.2f (at most 0.50)\n\n", works[0].bestMilliseconds / works[1].bestMilliseconds);
}
#endif

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s PHOTO [NETWORK.onnx]\n", argv[0]);
        return 2;
    }
    images::initialiseDecoder();
    const auto photo = files::FileUrl::fromPath(argv[1]);
    const similarity::FeaturePrintModel model;
    similarity::FeaturePrintModel::Scratch scratch;
    const images::Bitmap thumbnail = images::decoder().thumbnail(photo, 1024);
    images::Bitmap frame(224, 224);
    auto* to = frame.rgba().data();
    for (int y = 0; y < 224; ++y)
        for (int x = 0; x < 224; ++x) {
            const int from = y * thumbnail.height() / 224 * thumbnail.width() + x * thumbnail.width() / 224;
            to = std::copy_n(&thumbnail.rgba()[4 * from], 4, to);
        }

    if (argc > 2) {
#ifdef LUMISORT_OPENCV_DNN
        compareWithOpenCv(model, frame, argv[2]);
#else
        std::puts("libopencv-dnn-dev was not installed when this was built: no comparison\n");
#endif
    }

    std::vector<Work> works{
        {"decoding the photo to 1,024 pixels", [&] { images::decoder().thumbnail(photo, 1024); }},
        {"print from a decoded 224 x 224 frame", [&] { model.print(frame, scratch); }},
        {"print from the photo, decoding included",
         [&] { model.print(images::decoder().thumbnail(photo, 1024), scratch); }},
        {"loading the model", [] { similarity::FeaturePrintModel again; }}};
    measure(works, 20);
    std::printf("ratio %.2f (at most 1.30)\n",
                works[2].bestMilliseconds / (works[0].bestMilliseconds + works[1].bestMilliseconds));
}
