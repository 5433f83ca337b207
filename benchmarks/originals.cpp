// A step in full screen to a photo of 24 megapixels that was decoded ahead, until its first frame is drawn,
// against QPainter drawing the same pixels at the same size; and what making the levels adds to decoding. On
// the software scene graph unless QT_QUICK_BACKEND and QT_QPA_PLATFORM say otherwise.
//
//   benchmark-originals PHOTO
//
// PHOTO is enlarged to 6000 x 4000, once as it is and once mirrored.

#include "library/OriginalDecodeQueue.h"
#include "platform/images/Decoder.h"
#include "platform/images/decoding/DecoderSetup.h"
#include "platform/images/decoding/Vips.h"
#include "review/viewer/OriginalPane.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace lumisort;
using images::runVips;

constexpr int steps = 40, width = 1920, height = 1080;

template <class Work>
double milliseconds(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

struct Times {
    double median, most;
};

Times summed(std::vector<double> times) {
    std::ranges::sort(times);
    return {times[times.size() / 2], times.back()};
}

files::FileUrl enlarged(const char* photo, bool mirrored, const QTemporaryDir& folder) {
    auto image = runVips([&](VipsImage** out) {
        return vips_thumbnail(photo, out, 6000, "height", 4000, "size", VIPS_SIZE_FORCE, nullptr);
    });
    if (mirrored)
        image = runVips(
            [&](VipsImage** out) { return vips_flip(image.get(), out, VIPS_DIRECTION_HORIZONTAL, nullptr); });
    const auto path = folder.filePath(mirrored ? "b.jpg" : "a.jpg").toStdString();
    if (vips_jpegsave(image.get(), path.c_str(), "Q", 93, nullptr) != 0) std::abort();
    return files::FileUrl::fromPath(path);
}

/// What the pane draws, without it.
double paintedMilliseconds(const images::PicturePyramid& original) {
    const double scale = std::min(static_cast<double>(width) / original.width(),
                                  static_cast<double>(height) / original.height());
    const auto& level = original.levels()[original.levelFor(scale)];
    const QImage source(level.rgba().data(), level.width(), level.height(), QImage::Format_RGBX8888);
    QImage target(width, height, QImage::Format_RGB32);
    return milliseconds([&] {
        target.fill(Qt::black);
        QPainter painter(&target);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        const QSizeF size(original.width() * scale, original.height() * scale);
        painter.drawImage(
            QRectF((width - size.width()) / 2, (height - size.height()) / 2, size.width(), size.height()),
            source);
    });
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
    }
    images::initialiseDecoder();
    images::decoding::start({});
    const QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    const files::FileUrl photos[] = {enlarged(argv[1], false, folder), enlarged(argv[1], true, folder)};

    std::vector<double> decodes, loads;
    for (int run = 0; run < 5; ++run) {
        decodes.push_back(milliseconds([&] { images::decoder().thumbnail(photos[0], 6000); }));
        loads.push_back(
            milliseconds([&] { library::OriginalLoader::load(files::FileSystem::real(), photos[0]); }));
    }
    std::printf("original of 24 MP with its levels  %6.1f ms  decoding alone %6.1f ms  ratio %.2f\n",
                summed(loads).median, summed(decodes).median, summed(loads).median / summed(decodes).median);

    QQuickWindow window;
    window.setGeometry(0, 0, width, height);
    window.setColor(Qt::black);
    review::OriginalPane pane(window.contentItem());
    pane.setSize(QSizeF(width, height));
    window.show();
    const auto show = [&](const files::FileUrl& photo) {
        pane.setUrl(QString::fromStdString(photo.string()));
        while (pane.status() == review::OriginalPane::Loading) QCoreApplication::processEvents();
    };
    for (const auto& photo : photos) show(photo);
    std::vector<double> shown, painted;
    for (int step = 0; step < steps; ++step) {
        const auto& photo = photos[step % 2];
        shown.push_back(milliseconds([&] {
            show(photo);
            window.grabWindow(); // renders the frame and reads it back
        }));
        QCoreApplication::processEvents();
        painted.push_back(paintedMilliseconds(*library::OriginalDecodeQueue::shared().recall(photo)));
    }
    const auto step = summed(shown), paint = summed(painted);
    std::printf("step to a decoded neighbour until its first frame of %d x %d  %5.1f ms (at most %.1f)  "
                "QPainter %5.1f ms  ratio %.2f\n",
                width, height, step.median, step.most, paint.median, step.median / paint.median);
    return 0;
}
